#include <boost/lexical_cast.hpp>

#include "bench/events/MatrixTextCases.h"

namespace vantorix::bench {
namespace {

std::string withOurText(const Matrix& matrix) { return matrix.toEventDataString(); }

std::string withLexicalCast(const Matrix& matrix) {
    std::string text;
    for (int i = 0; i < 16; ++i) {
        if (i > 0) text += ' ';
        text += boost::lexical_cast<std::string>(matrix[i]);
    }
    return text;
}

BENCHMARK_CAPTURE(matrixText, pose, withOurText, POSE);
BENCHMARK_CAPTURE(matrixText, poseLexicalCast, withLexicalCast, POSE);
BENCHMARK_CAPTURE(matrixText, translation, withOurText, TRANSLATION);
BENCHMARK_CAPTURE(matrixText, translationLexicalCast, withLexicalCast, TRANSLATION);

}  // namespace
}  // namespace vantorix::bench
