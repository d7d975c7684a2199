#include "core/compute/MathEvaluator.h"

#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/compute/Filters.h"
#include "core/compute/MathBlocks.h"
#include "core/compute/MathCompiler.h"
#include "core/compute/MathOperators.h"
#include "core/compute/OutingConstants.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"

namespace {

// All rows of one evaluation together may hold no more than this many samples (512 MB): a deep
// formula over a whole long outing fails instead of taking the machine's memory.
constexpr int64_t kMaxStackSamples = int64_t{128} << 20;

// Rows kept for the next evaluation; deeper stacks are rare and give their memory back.
constexpr std::size_t kRowsKept = 8;

struct Evaluation {
  Workspace& ws;
  MathStack& stack;
  int slot;
  int lap;
  int top;  // the channel asked for: every operand is brought to its rate
  int64_t n;
};

OutingRec& Outing(const Evaluation& e) { return OutingAt(e.ws, e.slot); }

const ChannelRec& ChannelAt(const OutingRec& o, int c) {
  if (c < 0 || c >= static_cast<int>(o.Channels.size())) throw MathBoundsFailure();
  return o.Channels[static_cast<std::size_t>(c)];
}

const std::vector<float>& CachedSamples(Workspace& ws, int slot, int lap, int channel) {
  return OutingAt(ws, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].Samples;
}

void PushChannel(Evaluation& e, int c) {
  OutingRec& o = Outing(e);
  // A "$" reference typed into a formula may name anything: only logged and derived channels
  // are operands of this kind.
  if (c < 0 || c >= o.LoggedCount + 3) throw MathBoundsFailure();
  const ChannelRec& channel = ChannelAt(o, c);
  if (c < o.LoggedCount) {
    FetchLoggedChannel(e.ws, e.slot, e.lap, c);
  } else {
    FetchDerivedChannel(e.ws, e.slot, e.lap, c);
  }
  const float ratio = channel.Rate / ChannelAt(o, e.top).Rate;
  ResampleOperand(CachedSamples(e.ws, e.slot, e.lap, c), ratio, 0, e.stack.NextRow(e.n), e.n);
  ++e.stack.Depth;
}

void PushNumber(Evaluation& e, const QString& text) {
  float* row = e.stack.NextRow(e.n);
  std::fill(row, row + e.n, static_cast<float>(LeadingNumber(text)));
  ++e.stack.Depth;
}

const PostfixRec& FormulaOf(const Evaluation& e, int channel) {
  const OutingRec& o = Outing(e);
  const int i = channel - (o.LoggedCount + 3);
  if (i < 0 || i >= static_cast<int>(o.Postfix.size())) throw MathBoundsFailure();
  return o.Postfix[static_cast<std::size_t>(i)];
}

// One level of the nest. A math operand runs the next level on the same stack; the ninth level
// doesn't nest further, so a self-reference ends there.
void EvalLevel(Evaluation& e, int channel, int level) {
  const PostfixRec& formula = FormulaOf(e, channel);
  const int count = std::min<int>(formula.Count, static_cast<int>(formula.Tokens.size()));
  int last_operand = 0;
  for (int t = 0; t < count; ++t) {
    const PostfixEntry& token = formula.Tokens[static_cast<std::size_t>(t)];
    switch (token.Kind) {
      case kTokenChannel:
        last_operand = token.Text.toInt();
        PushChannel(e, last_operand);
        break;
      case kTokenMathChannel:
        last_operand = token.Text.toInt();
        if (level >= kMathLevels) {
          float* row = e.stack.NextRow(e.n);
          std::fill(row, row + e.n, 0.0f);  // the depth isn't raised
          break;
        }
        EvalLevel(e, last_operand, level + 1);
        FilterStackRow(e.ws, e.stack, e.slot, last_operand, e.n);
        break;
      case kTokenNumber:
        PushNumber(e, token.Text);
        break;
      default:
        ApplyMathOperator(e.ws, e.stack, e.slot, e.lap, token.Text, last_operand, e.n, channel);
        break;
    }
  }
}

void ZeroRow(float* a, int64_t n) { std::fill(a, a + n, 0.0f); }

// "Delta" of any channel but time: the difference to the channel of the same short name in the
// Datum lap, brought to this operand's rate.
void DeltaRow(Workspace& ws, float* a, int64_t n, const ChannelRec& operand) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const OutingRec& datum = OutingAt(ws, folder.DatumOuting);
  int found = -1;
  const int last = std::min<int>(datum.LastChannel, static_cast<int>(datum.Channels.size()) - 1);
  for (int c = 0; c <= last && found < 0; ++c) {
    if (datum.Channels[static_cast<std::size_t>(c)].ShortName == operand.ShortName) found = c;
  }
  if (found < 0 || datum.Loaded == 0 || folder.DatumLap < 0 || folder.DatumLap >= static_cast<int>(datum.Laps.size())) {
    return ZeroRow(a, n);
  }
  GetChannelData(ws, folder.DatumOuting, folder.DatumLap, found);
  const std::vector<float>& d = CachedSamples(ws, folder.DatumOuting, folder.DatumLap, found);
  const float ratio = datum.Channels[static_cast<std::size_t>(found)].Rate / operand.Rate;
  for (int64_t j = 0; j < n; ++j) {
    const int64_t i = RoundHalfEven(static_cast<double>(j) * ratio);
    if (i < 0 || i >= static_cast<int64_t>(d.size())) return;  // past the Datum's end: the operator ends
    a[j] -= d[static_cast<std::size_t>(i)];
  }
}

}  // namespace

void ResampleOperand(const std::vector<float>& data, float ratio, int64_t first, float* row, int64_t n) {
  const auto size = static_cast<int64_t>(data.size());
  if (ratio == 1.0f) {
    const int64_t m = std::clamp<int64_t>(size - first, 0, n);
    std::copy_n(data.data() + std::min(first, size), m, row);
    std::fill(row + m, row + n, 0.0f);
    return;
  }
  for (int64_t j = 0; j < n; ++j) {
    const int64_t i = RoundHalfEven(static_cast<double>(first + j) * ratio);
    row[j] = i < size ? data[static_cast<std::size_t>(i)] : 0.0f;
  }
}

float* MathStack::Row(int i) {
  if (i < 0 || i >= static_cast<int>(Rows.size())) throw MathBoundsFailure();
  return Rows[static_cast<std::size_t>(i)].data();
}

float* MathStack::NextRow(int64_t n) {
  if ((Depth + int64_t{1}) * (n + 1) > kMaxStackSamples) throw MathBoundsFailure();
  if (static_cast<int>(Rows.size()) <= Depth) Rows.resize(static_cast<std::size_t>(Depth) + 1);
  std::vector<float>& row = Rows[static_cast<std::size_t>(Depth)];
  row.resize(static_cast<std::size_t>(n) + 1);
  row[static_cast<std::size_t>(n)] = 0;  // column n is never an operand's
  return row.data();
}

std::vector<float> EvaluateMathChannel(Workspace& ws, int slot, int lap, int channel, int64_t n) {
  std::vector<float> result;
  if (EvaluateByBlocks(ws, slot, lap, channel, n, result)) return result;
  return EvaluateByRows(ws, slot, lap, channel, n);
}

std::vector<float> EvaluateByRows(Workspace& ws, int slot, int lap, int channel, int64_t n) {
  std::vector<float> result(static_cast<std::size_t>(std::max<int64_t>(n, 0)) + 1, 0.0f);
  if (n < 0) return result;
  MathStack stack;
  stack.Rows.swap(ws.MathRows);  // an evaluation nested by a fetch finds none and makes its own
  try {
    const int row = EvalMathChannel(ws, stack, slot, lap, channel, n);
    if (row >= 0) std::copy_n(stack.Row(row), n + 1, result.begin());
  } catch (const MathBoundsFailure&) {
    std::fill(result.begin(), result.end(), 0.0f);  // the channel reads as zeros
  }
  if (stack.Rows.size() > kRowsKept) stack.Rows.resize(kRowsKept);
  ws.MathRows.swap(stack.Rows);
  return result;
}

int EvalMathChannel(Workspace& ws, MathStack& stack, int slot, int lap, int channel, int64_t n) {
  Evaluation e{ws, stack, slot, lap, channel, n};
  stack.Depth = 0;
  EvalLevel(e, channel, 1);
  return stack.Depth - 1;
}

void ApplyMathOperator(Workspace& ws, MathStack& stack, int slot, int lap, const QString& word, int last_operand,
                       int64_t n, int channel) {
  const MathOp op = MathOpFromWord(word);
  if (op == MathOp::Subtract && stack.Depth <= 1) return NegateRow(stack.Row(stack.Depth - 1), n);
  if (IsBinaryOp(op)) {
    --stack.Depth;
    float* a = stack.Row(stack.Depth - 1);
    BinaryRow(op, a, stack.Row(stack.Depth), n);
    return;
  }
  float* a = stack.Row(stack.Depth - 1);
  OutingRec& o = OutingAt(ws, slot);
  const ChannelRec& operand = ChannelAt(o, last_operand);
  switch (op) {
    case MathOp::Deriv: return DerivRow(a, n, operand.Rate);
    case MathOp::Integ: return IntegRow(a, n, operand.Rate, stack.IntegAccum);
    case MathOp::Delta: {
      if (ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].DatumOuting < 0) return ZeroRow(a, n);
      if (operand.Key != kDerivedTimeKey) return DeltaRow(ws, a, n, operand);
      DeltaTimeRow(ws, stack, slot, lap, n);
      if (ws.Options.AutoFilterET) {
        // The time difference steps at the distance channel's rate: smooth it.
        ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
        c.FilterKind = 1;
        c.SmoothWidth = 5;
      }
      return;
    }
    default: FunctionRow(op, a, n);
  }
}

void DeltaTimeRow(Workspace& ws, MathStack& stack, int slot, int lap, int64_t n) {
  float* row = stack.Row(stack.Depth - 1);
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const int datum_slot = folder.DatumOuting, datum_lap = folder.DatumLap;
  const OutingRec& o = OutingAt(ws, slot);
  const OutingRec& datum = OutingAt(ws, datum_slot);
  auto distance = [&ws](const OutingRec& outing, int s, int l) -> const std::vector<float>* {
    if (outing.ChanDistance < 1 || outing.ChanDistance >= outing.LoggedCount + 3) return nullptr;
    if (l < 0 || l >= static_cast<int>(outing.Laps.size())) return nullptr;
    GetChannelData(ws, s, l, outing.ChanDistance);
    return &CachedSamples(ws, s, l, outing.ChanDistance);
  };
  const std::vector<float>* cur = distance(o, slot, lap);
  const std::vector<float>* dat = distance(datum, datum_slot, datum_lap);
  if (!cur || !dat) return;
  const float start = o.Laps[static_cast<std::size_t>(lap)].StartDistance;
  const float datum_start = datum.Laps[static_cast<std::size_t>(datum_lap)].StartDistance;
  const int64_t upper = static_cast<int64_t>(dat->size()) - 2;  // dat[k + 1] is read too
  int64_t k = 0;
  for (int64_t j = 0; j < n; ++j) {
    if (j >= static_cast<int64_t>(cur->size())) return;
    const float d = (*cur)[static_cast<std::size_t>(j)] - start;
    float e = 0;
    // The Datum reaches the distance at k; the search goes on from there for the next sample.
    for (; k <= upper; ++k) {
      e = (*dat)[static_cast<std::size_t>(k)] - datum_start;
      if (e >= d) break;
    }
    if (k > upper) return;  // the Datum never got this far: the rest of the row stays
    const float g = (*dat)[static_cast<std::size_t>(k) + 1] - (*dat)[static_cast<std::size_t>(k)];
    const double behind = g > 0 ? static_cast<double>(j - k) + (e - d) / g : static_cast<double>(j - k);
    row[j] = static_cast<float>(behind * 0.1);  // the distance channel's period
  }
}

void FilterStackRow(Workspace& ws, MathStack& stack, int slot, int channel, int64_t n) {
  const ChannelRec& c = ChannelAt(OutingAt(ws, slot), channel);
  if (c.FilterKind == 0) return;
  float* row = stack.Row(stack.Depth - 1);
  std::vector<float> work = ApplyChannelFilter(ws, slot, channel, std::vector<float>(row, row + n + 1));
  std::copy_n(work.begin(), std::min<int64_t>(static_cast<int64_t>(work.size()), n + 1), row);
}
