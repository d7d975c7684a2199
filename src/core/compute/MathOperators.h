#pragma once

// The operators and functions of math formulas, each over whole rows of samples: an operator
// works on all samples of its rows before the next token is looked at, so the per-token
// interpretation stays out of the sample loop.
//
// Run-time faults are handled sample by sample: an overflow (a result out of the 32-bit float
// range from finite operands, a sample that doesn't fit a 32-bit integer, a power too large)
// sets that sample to 0 and the loop goes on; any other fault ("%" by 0, a power or root of a
// negative number that has no real value) ends the operator there, and the samples from there
// on keep the operand's values.

#include <QString>
#include <cstdint>

enum class MathOp {
  Add, Subtract, Multiply, Divide, Power,
  Greater, GreaterEqual, Less, LessEqual, And, Or, Xor, Modulo, Equal, NotEqual,
  Abs, ACos, ASin, ATan, Cos, Deriv, Delta, Exp, Integ, Ln, Log, Sin, Sqrt, Tan,
  Min, Max, Avg, GateAvg, Not, Ceil, Floor, Start, End,
  Other,  // any other word: the row becomes 0
};

// The operator a token's word names, compared as the function table spells it.
MathOp MathOpFromWord(const QString& word);

// True for the words that take two rows ("-" takes one when it stands alone).
bool IsBinaryOp(MathOp op);

// a[j] = a[j] op b[j] for j = 0..n-1. False when a fault ended the operator early.
bool BinaryRow(MathOp op, float* a, const float* b, int64_t n);
// The same into out[j], which may be a itself but never b.
bool BinaryRow(MathOp op, float* out, const float* a, const float* b, int64_t n);

// The unary minus.
void NegateRow(float* a, int64_t n);

// A function in place on a[0..n-1]; not Deriv, Integ and Delta, which need the outing. False
// when a fault ended it early.
bool FunctionRow(MathOp op, float* a, int64_t n);

// True for the words whose sample j depends on sample j of their operands alone.
bool IsPointwiseOp(MathOp op);

// "Deriv" and "Integ" at `rate` samples per ms; `accumulator` is the running sum of "Integ".
void DerivRow(float* a, int64_t n, float rate);
void IntegRow(float* a, int64_t n, float rate, float& accumulator);
