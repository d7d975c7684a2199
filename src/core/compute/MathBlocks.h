#pragma once

// A faster way through the most common formulas: when every operator of a formula works sample
// by sample and its operands are logged or derived channels and numbers, the whole token list
// runs over blocks of samples small enough to stay in the processor's cache, instead of each
// operator over the whole lap. The result is the same, sample for sample, fault for fault.

#include <cstdint>
#include <vector>

struct Workspace;

// Evaluates math channel `channel` of outing `slot` for `lap` over n samples into `result`
// (n + 1 values). False, with nothing done, when the formula needs the evaluation by rows.
bool EvaluateByBlocks(Workspace& ws, int slot, int lap, int channel, int64_t n, std::vector<float>& result);
