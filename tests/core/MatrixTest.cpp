#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "core_api/utils/Matrix.h"
#include "core_api/utils/Vector.h"

namespace {

using vantorix::core::utils::Matrix;
using vantorix::core::utils::Vector;

template <class Access>
void expectOutOfRange(const Access& access) {
    try {
        access();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
    }
}

bool sameBits(float left, float right) { return std::memcmp(&left, &right, sizeof(float)) == 0; }

/// The same float, where one NaN is as good as another.
bool sameValue(float left, float right) {
    return sameBits(left, right) || (std::isnan(left) && std::isnan(right));
}

/// The text by way of the standard library.
std::string standardText(const Matrix& matrix) {
    std::string text;
    for (int i = 0; i < 16; ++i) {
        char number[32];
        const auto end = std::to_chars(std::begin(number), std::end(number), matrix[i]).ptr;
        text.append(i > 0 ? " " : "").append(number, end);
    }
    return text;
}

float fromBits(std::uint32_t bits) {
    float value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

TEST(MatrixTest, StartsAsIdentityZerosOrACopy) {
    float elements[16];
    for (int i = 0; i < 16; ++i) elements[i] = static_cast<float>(i);
    const Matrix identity(true), zeros(false), copy(elements);
    const float* const none = nullptr;
    const Matrix neutral(none);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(identity[i], i % 5 == 0 ? 1.0f : 0.0f);
        EXPECT_EQ(neutral[i], identity[i]);
        EXPECT_EQ(zeros[i], 0.0f);
        EXPECT_EQ(copy.getMatrix()[i], static_cast<float>(i));
    }
}

TEST(MatrixTest, IndicesOutsideAreRefused) {
    Matrix matrix(true);
    const Matrix& constant = matrix;
    for (const int index : {-1, 16, std::numeric_limits<int>::min()}) {
        expectOutOfRange([&] { matrix[index] = 1; });
        expectOutOfRange([&] { (void)constant[index]; });
    }
}

TEST(MatrixTest, TheTextIsPlain) {
    Matrix matrix(true);
    const float values[] = {0.5f, -0.25f, 1e-9f, 1e10f, 100.0f, -0.0f, 16777216.0f, 0.1f};
    for (int i = 0; i < 8; ++i) matrix[i + 4] = values[i];
    EXPECT_EQ(matrix.toEventDataString(),
              "1 0 0 0 0.5 -0.25 1e-09 1e+10 100 -0 16777216 0.1 0 0 0 1");
}

void expectShortestTextThatReadsBack(const Matrix& matrix) {
    const auto text = matrix.toEventDataString();
    ASSERT_EQ(text, standardText(matrix));
    Matrix read(true);
    ASSERT_TRUE(Matrix::fromEventDataString(text, read));
    for (int i = 0; i < 16; ++i) ASSERT_TRUE(sameValue(matrix[i], read[i])) << matrix[i];
}

TEST(MatrixTest, BitPatternsAndOrdinaryNumbersGiveTheShortestTextThatReadsBack) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> whole(-2000000, 2000000), power(0, 9);
    for (int round = 0; round < 10000; ++round) {
        Matrix any(false), ordinary(false);
        for (int i = 0; i < 16; ++i) {
            any[i] = fromBits(static_cast<std::uint32_t>(random()));
            const auto scale = std::pow(10.0f, static_cast<float>(power(random)));
            ordinary[i] = static_cast<float>(whole(random)) / scale;
        }
        expectShortestTextThatReadsBack(any);
        expectShortestTextThatReadsBack(ordinary);
    }
}

TEST(MatrixTest, EveryPowerOfTwoAndItsNeighboursGiveTheShortestTextThatReadsBack) {
    for (std::uint32_t exponent = 0; exponent <= 255; ++exponent) {
        Matrix matrix(false);
        for (int i = 0; i < 16; ++i) {
            matrix[i] = fromBits((exponent << 23) + static_cast<std::uint32_t>(i) - 8u);
        }
        expectShortestTextThatReadsBack(matrix);
    }
}

TEST(MatrixTest, OtherTextsAreRefusedAndChangeNothing) {
    const auto good = Matrix(true).toEventDataString();
    for (const auto& text :
         {std::string(), good + " ", good + " 1", " " + good, good.substr(2), "x" + good.substr(1),
          good.substr(0, 1) + " " + good.substr(1), good.substr(0, good.size() - 1) + "1e99"}) {
        Matrix matrix(false);
        EXPECT_FALSE(Matrix::fromEventDataString(text, matrix)) << text;
        EXPECT_EQ(matrix[0], 0.0f);
        EXPECT_EQ(Matrix::fromEventDataString(text)[0], 1.0f);
    }
}

TEST(VectorTest, HasNComponentsOrNone) {
    Vector<float, 3> empty;
    EXPECT_EQ(empty.size(), 0u);
    expectOutOfRange([&] { (void)empty[0]; });

    const float values[] = {1, 2, 3};
    Vector<float, 3> vector(values);
    EXPECT_EQ(vector, (Vector<float, 3>(1, 2, 3)));
    EXPECT_NE(vector, empty);
    vector[2] = 4;
    EXPECT_EQ(vector, (Vector<float, 3>(1, 2, 4)));
    expectOutOfRange([&] { vector[3] = 1; });
    EXPECT_EQ((Vector<float, 4>(1, 2, 3, 4))[3], 4.0f);
}

}  // namespace
