#include <functional>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "core_api/utils/Matrix.h"
#include "core_api/utils/Vector.h"

#include "scene/transform/TransformationLookAt.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationSkew.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::scene {
namespace {

using core::utils::Matrix;
using Vector3 = core::utils::Vector<float, 3>;

const Vector3 v123(1.0f, 2.0f, 3.0f);
const Vector3 v456(4.0f, 5.0f, 6.0f);
const float columns[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

struct NewElement {
    const char* name;
    std::function<boost::shared_ptr<ITransformation>()> make;
    ITransformation::Type type;
    bool updated;
};

std::ostream& operator<<(std::ostream& out, const NewElement& element) {
    return out << element.name;
}

template <class Element, class... Arguments>
std::function<boost::shared_ptr<ITransformation>()> make(Arguments... arguments) {
    return [=] { return boost::make_shared<Element>(arguments...); };
}

struct Elements : ::testing::TestWithParam<NewElement> {};

TEST_P(Elements, HaveATypeAndTellOnceWhetherTheyAreUpdated) {
    const auto element = GetParam().make();
    EXPECT_EQ(element->getType(), GetParam().type);
    EXPECT_EQ(element->getSid(), "");
    EXPECT_EQ(element->updated(), GetParam().updated);
    EXPECT_FALSE(element->updated());
    element->setSid("sid");
    EXPECT_FALSE(element->updated());
}

TEST_P(Elements, AreClonedWithSidAndFlag) {
    const auto element = GetParam().make();
    element->setSid("sid");
    const auto clone = element->clone();
    EXPECT_EQ(clone->getType(), GetParam().type);
    EXPECT_EQ(clone->getSid(), "sid");
    EXPECT_EQ(clone->updated(), GetParam().updated);
    EXPECT_EQ(element->updated(), GetParam().updated);  // Asking the clone left it alone.
}

INSTANTIATE_TEST_SUITE_P(
    All, Elements,
    ::testing::Values(
        NewElement{"LookAt", make<TransformationLookAt>(v123, v456, v123), ITransformation::LOOK_AT,
                   true},
        NewElement{"Matrix", make<TransformationMatrix>(), ITransformation::MATRIX, true},
        NewElement{"MatrixOfFloats", make<TransformationMatrix>(&columns[0]),
                   ITransformation::MATRIX, false},
        NewElement{"MatrixOfMatrix", make<TransformationMatrix>(Matrix(true)),
                   ITransformation::MATRIX, false},
        NewElement{"Rotate", make<TransformationRotate>(), ITransformation::ROTATE, true},
        NewElement{"RotateOfAxis", make<TransformationRotate>(v123, 30.0f), ITransformation::ROTATE,
                   false},
        NewElement{"Scale", make<TransformationScale>(), ITransformation::SCALE, true},
        NewElement{"ScaleOfVector", make<TransformationScale>(v123), ITransformation::SCALE, false},
        NewElement{"ScaleOfFloats", make<TransformationScale>(1.0f, 2.0f, 3.0f),
                   ITransformation::SCALE, false},
        NewElement{"Skew", make<TransformationSkew>(30.0f, v123, v456), ITransformation::SKEW,
                   true},
        NewElement{"Translate", make<TransformationTranslate>(), ITransformation::TRANSLATE, true},
        NewElement{"TranslateOfVector", make<TransformationTranslate>(v123),
                   ITransformation::TRANSLATE, false}),
    ::testing::PrintToStringParamName());

TEST(TransformationElements, StartNeutral) {
    EXPECT_EQ(TransformationScale().getScale(), Vector3(1.0f, 1.0f, 1.0f));
    EXPECT_EQ(TransformationTranslate().getTranslation(), Vector3(0.0f, 0.0f, 0.0f));
    EXPECT_EQ(TransformationRotate().getAngle(), 0.0f);
    EXPECT_EQ(TransformationRotate().getRotationAxis().size(), 0u);
    EXPECT_THROW(TransformationRotate().getRotationAxis()[0], std::out_of_range);
}

TEST(TransformationElements, CloneIsIndependent) {
    TransformationLookAt element(v123, v456, v123);
    const auto clone = boost::dynamic_pointer_cast<TransformationLookAt>(element.clone());
    ASSERT_TRUE(clone);
    element.getEyePosition()[0] = 9.0f;
    EXPECT_EQ(clone->getEyePosition(), v123);
    EXPECT_EQ(clone->getInterestPoint(), v456);
}

TEST(TransformationElements, AnAssignedOneTakesSidAndFlagToo) {
    TransformationScale source(v456), target(v123);
    source.setSid("source");
    source.setScaleX(9.0f);
    target = source;
    EXPECT_EQ(target.getSid(), "source");
    EXPECT_EQ(target.getScale(), Vector3(9.0f, 5.0f, 6.0f));
    EXPECT_TRUE(target.updated());
    EXPECT_TRUE(source.updated());
}

/// Runs @p set and tells whether the element counts as updated by it.
template <class Element, class Set>
bool updates(Element& element, Set set) {
    element.updated();
    set(element);
    return element.updated();
}

TEST(TransformationElements, EverySetterRaisesTheFlag) {
    TransformationLookAt lookAt(v123, v123, v123);
    EXPECT_TRUE(updates(lookAt, [](auto& e) { e.setEyePosition(v456); }));
    EXPECT_TRUE(updates(lookAt, [](auto& e) { e.setInterestPoint(v456); }));
    EXPECT_TRUE(updates(lookAt, [](auto& e) { e.setUpAxis(v456); }));
    TransformationMatrix matrix;
    EXPECT_TRUE(updates(matrix, [](auto& e) { e.setMatrix(columns); }));
    EXPECT_TRUE(updates(matrix, [](auto& e) { e.setMatrix(Matrix(true)); }));
    TransformationRotate rotate;
    EXPECT_TRUE(updates(rotate, [](auto& e) { e.setAngle(1.0f); }));
    EXPECT_TRUE(updates(rotate, [](auto& e) { e.setRotationAxis(v123); }));
    EXPECT_TRUE(updates(rotate, [](auto& e) { e.setRotationAxis(1.0f, 0.0f, 0.0f); }));
    EXPECT_TRUE(updates(rotate, [](auto& e) { e.rotateBy(v123, 10.0f); }));
    EXPECT_TRUE(updates(rotate, [](auto& e) { e.setFromMatrix(Matrix(true)); }));
    TransformationScale scale;
    EXPECT_TRUE(updates(scale, [](auto& e) { e.setScale(v123); }));
    EXPECT_TRUE(updates(scale, [](auto& e) { e.setScaleX(4.0f); }));
    EXPECT_TRUE(updates(scale, [](auto& e) { e.setScaleY(5.0f); }));
    EXPECT_TRUE(updates(scale, [](auto& e) { e.setScaleZ(6.0f); }));
    EXPECT_EQ(scale.getScale(), v456);
    TransformationSkew skew(0.0f, v123, v123);
    EXPECT_TRUE(updates(skew, [](auto& e) { e.setAngle(1.0f); }));
    EXPECT_TRUE(updates(skew, [](auto& e) { e.setRotation(v456); }));
    EXPECT_TRUE(updates(skew, [](auto& e) { e.setTranslation(v456); }));
}

TEST(TransformationElements, AVectorSetToItselfStaysAndCountsAsUpdate) {
    TransformationTranslate translate(v123);
    EXPECT_TRUE(updates(translate, [](auto& e) { e.setTranslation(e.getTranslation()); }));
    EXPECT_EQ(translate.getTranslation(), v123);
    TransformationSkew skew(1.0f, v123, v456);
    skew.setRotation(skew.getTranslation());
    EXPECT_EQ(skew.getRotation(), v456);
}

TEST(TransformationElements, WritingThroughAReferenceIsNoUpdate) {
    TransformationScale scale(v123);
    scale.getScale()[2] = 7.0f;
    EXPECT_EQ(scale.getScaleZ(), 7.0f);
    EXPECT_FALSE(scale.updated());
}

TEST(TransformationElements, MatrixValuesAreAddressedByColumn) {
    const TransformationMatrix matrix(columns);
    EXPECT_EQ(matrix.getValue(3, 0), 12.0f);
    EXPECT_EQ(matrix.getValue(0, 3), 3.0f);
    EXPECT_EQ(matrix.getValue(4, 0), 0.0f);
    EXPECT_EQ(matrix.getValue(0, 4), 0.0f);
}

TEST(TransformationElements, AMatrixIsNotReadFromNull) {
    const float* const nothing = nullptr;
    TransformationMatrix matrix(nothing);
    EXPECT_EQ(matrix.getValue(2, 2), 1.0f);
    EXPECT_EQ(matrix.getValue(3, 2), 0.0f);
    matrix.setMatrix(columns);
    matrix.setMatrix(nothing);
    EXPECT_EQ(matrix.getValue(2, 2), 10.0f);
}

}  // namespace
}  // namespace vantorix::scene
