#include "bench/events/FmtMatrixText.h"
#include "bench/events/MatrixTextCases.h"

namespace vantorix::bench {
namespace {

std::string withFmt(const Matrix& matrix) { return fmtMatrixText(matrix.getMatrix()); }

BENCHMARK_CAPTURE(matrixText, poseFmt, withFmt, POSE);
BENCHMARK_CAPTURE(matrixText, translationFmt, withFmt, TRANSLATION);

}  // namespace
}  // namespace vantorix::bench
