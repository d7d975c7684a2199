#pragma once

// The math evaluator: computes a math channel's samples for one lap from its postfix tokens.
// One stack row stands for one operand; operands are brought to the rate of the channel being
// computed when they are pushed, so all rows of one evaluation have the same length and time
// base. A math channel named in a formula is computed in a nested level, up to nine deep.

#include <QString>
#include <cstdint>
#include <stdexcept>
#include <vector>

struct Workspace;

inline constexpr int kMathLevels = 9;

// The rows of one top-level evaluation. Rows hold N + 1 columns; column N is never written by an
// operand. Rows are reused from one evaluation to the next.
struct MathStack {
  std::vector<std::vector<float>> Rows;
  int Depth = 0;  // rows in use
  float IntegAccum = 0;

  // Row `i`; an index below the floor is a bounds failure that ends the evaluation.
  float* Row(int i);
  // Makes row Depth ready for an operand of n samples (column n cleared) and returns it.
  float* NextRow(int64_t n);
};

// Thrown when a formula reaches below the stack's floor or names a channel the outing doesn't
// have: the evaluation ends and the channel reads as zeros.
struct MathBoundsFailure : std::runtime_error {
  MathBoundsFailure() : std::runtime_error("math evaluation out of bounds") {}
};

// The samples of math channel `channel` of outing `slot` (current folder) for `lap`: n + 1
// values, zero where the formula gives nothing. The channel's own filter isn't applied here.
// Formulas that work sample by sample run over blocks of samples (MathBlocks.h), the others
// operator by operator over whole rows, as EvaluateByRows does for any formula.
std::vector<float> EvaluateMathChannel(Workspace& ws, int slot, int lap, int channel, int64_t n);
std::vector<float> EvaluateByRows(Workspace& ws, int slot, int lap, int channel, int64_t n);

// Samples first..first+n-1 of an operand at the rate of the channel being computed:
// row[j] = data[(first + j) x ratio rounded], plain decimation or repetition. Samples past the end
// of the data (a lap running into the end of the file) read 0, as the fetch gives them.
void ResampleOperand(const std::vector<float>& data, float ratio, int64_t first, float* row, int64_t n);

// Level 1 of an evaluation: pushes the result of `channel`'s formula and returns its row,
// -1 when the formula has no tokens. Throws MathBoundsFailure.
int EvalMathChannel(Workspace& ws, MathStack& stack, int slot, int lap, int channel, int64_t n);

// Performs one operator or function token on the top rows. `last_operand` is the channel read
// last in this level, whose rate and name "Deriv", "Integ" and "Delta" take; `channel` is the
// math channel whose formula holds the token.
void ApplyMathOperator(Workspace& ws, MathStack& stack, int slot, int lap, const QString& word, int last_operand,
                       int64_t n, int channel);

// The top row for "Delta" of the time channel: seconds behind the Datum lap at the same distance.
void DeltaTimeRow(Workspace& ws, MathStack& stack, int slot, int lap, int64_t n);

// A math operand carries its own filter: the top row through the filter of `channel`.
void FilterStackRow(Workspace& ws, MathStack& stack, int slot, int channel, int64_t n);
