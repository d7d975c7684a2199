#include "core/compute/MathBlocks.h"

#include <algorithm>

#include "core/app/Workspace.h"
#include "core/compute/MathCompiler.h"
#include "core/compute/MathEvaluator.h"
#include "core/compute/MathOperators.h"
#include "core/compute/OutingConstants.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"

namespace {

constexpr int64_t kBlock = 1024;

// One token, prepared: what it pushes or does.
struct Step {
  int16_t kind = 0;
  MathOp op = MathOp::Other;
  bool unary_minus = false;
  bool stopped = false;  // a fault ended this operator in an earlier block
  const std::vector<float>* data = nullptr;  // a channel's samples
  float ratio = 1;
  float number = 0;
};

// A row of the block: its own buffer, or a view straight into a channel's samples.
struct Slot {
  std::vector<float> buffer = std::vector<float>(kBlock);
  const float* p = nullptr;
};

// The steps of the formula, or false when it isn't one for blocks: a math operand, an operator
// over the whole row, a reference the outing lacks, or too few operands somewhere (which the
// evaluation by rows turns into its failure).
bool Prepare(Workspace& ws, int slot, int lap, int channel, std::vector<Step>& steps, int& max_depth, int& depth) {
  const OutingRec& o = OutingAt(ws, slot);
  const int i = channel - (o.LoggedCount + 3);
  if (i < 0 || i >= static_cast<int>(o.Postfix.size())) return false;
  const PostfixRec& formula = o.Postfix[static_cast<std::size_t>(i)];
  const int count = std::min<int>(formula.Count, static_cast<int>(formula.Tokens.size()));
  const float top_rate = o.Channels[static_cast<std::size_t>(channel)].Rate;
  depth = 0;
  max_depth = 0;
  for (int t = 0; t < count; ++t) {
    const PostfixEntry& token = formula.Tokens[static_cast<std::size_t>(t)];
    Step s;
    s.kind = token.Kind;
    if (token.Kind == kTokenChannel) {
      const int c = token.Text.toInt();
      if (c < 0 || c >= o.LoggedCount + 3 || c >= static_cast<int>(o.Channels.size())) return false;
      s.ratio = o.Channels[static_cast<std::size_t>(c)].Rate / top_rate;
      s.number = static_cast<float>(c);
      ++depth;
    } else if (token.Kind == kTokenNumber) {
      s.number = static_cast<float>(LeadingNumber(token.Text));
      ++depth;
    } else if (token.Kind == kTokenOperator) {
      s.op = MathOpFromWord(token.Text);
      if (!IsPointwiseOp(s.op)) return false;
      s.unary_minus = s.op == MathOp::Subtract && depth <= 1;
      const int needed = IsBinaryOp(s.op) && !s.unary_minus ? 2 : 1;
      if (depth < needed) return false;
      depth -= needed - 1;
    } else {
      return false;
    }
    max_depth = std::max(max_depth, depth);
    steps.push_back(s);
  }
  if (depth < 1) return false;
  // Operands are fetched in the order of the formula, as the evaluation by rows does.
  for (Step& s : steps) {
    if (s.kind != kTokenChannel) continue;
    const int c = static_cast<int>(s.number);
    if (c < o.LoggedCount) {
      FetchLoggedChannel(ws, slot, lap, c);
    } else {
      FetchDerivedChannel(ws, slot, lap, c);
    }
    s.data = &OutingAt(ws, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].Samples;
  }
  return true;
}

// Samples j0..j0+len-1 of a channel operand: a view when they lie in its samples at the same
// rate, else brought to the rate in the slot's buffer as the rows are.
void Load(const Step& s, int64_t j0, int64_t len, Slot& slot) {
  const std::vector<float>& d = *s.data;
  const auto size = static_cast<int64_t>(d.size());
  if (s.ratio == 1.0f && j0 + len <= size) {
    slot.p = d.data() + j0;
    return;
  }
  ResampleOperand(d, s.ratio, j0, slot.buffer.data(), len);
  slot.p = slot.buffer.data();
}

// The slot's samples, in its own buffer so an operator may write them.
float* Writable(Slot& slot, int64_t len) {
  if (slot.p != slot.buffer.data()) std::copy_n(slot.p, len, slot.buffer.data());
  slot.p = slot.buffer.data();
  return slot.buffer.data();
}

void RunBlock(std::vector<Step>& steps, std::vector<Slot>& slots, int64_t j0, int64_t len) {
  int depth = 0;
  for (Step& s : steps) {
    if (s.kind == kTokenChannel) {
      Load(s, j0, len, slots[static_cast<std::size_t>(depth++)]);
    } else if (s.kind == kTokenNumber) {
      Slot& slot = slots[static_cast<std::size_t>(depth++)];
      std::fill_n(slot.buffer.data(), len, s.number);
      slot.p = slot.buffer.data();
    } else if (s.unary_minus) {
      if (!s.stopped) NegateRow(Writable(slots[static_cast<std::size_t>(depth - 1)], len), len);
    } else if (IsBinaryOp(s.op)) {
      --depth;
      if (s.stopped) continue;  // ended by a fault: the rest of the row keeps the left operand
      Slot& a = slots[static_cast<std::size_t>(depth - 1)];
      float* out = a.buffer.data();  // a view is read in place, not copied first
      s.stopped = !BinaryRow(s.op, out, a.p, slots[static_cast<std::size_t>(depth)].p, len);
      a.p = out;
    } else if (!s.stopped) {
      s.stopped = !FunctionRow(s.op, Writable(slots[static_cast<std::size_t>(depth - 1)], len), len);
    }
  }
}

}  // namespace

bool EvaluateByBlocks(Workspace& ws, int slot, int lap, int channel, int64_t n, std::vector<float>& result) {
  std::vector<Step> steps;
  int max_depth = 0, depth = 0;
  if (n < 0 || !Prepare(ws, slot, lap, channel, steps, max_depth, depth)) return false;
  std::vector<Slot> slots(static_cast<std::size_t>(max_depth));
  result.assign(static_cast<std::size_t>(n) + 1, 0.0f);
  for (int64_t j0 = 0; j0 < n; j0 += kBlock) {
    const int64_t len = std::min(kBlock, n - j0);
    RunBlock(steps, slots, j0, len);
    std::copy_n(slots[static_cast<std::size_t>(depth - 1)].p, len, result.begin() + j0);  // the top row
  }
  return true;
}
