#include "core/compute/MathChannels.h"

#include "core/app/Files.h"
#include "core/app/Workspace.h"
#include "core/compute/MathCompiler.h"
#include "core/outing/ChannelData.h"
#include "core/outing/DescriptorCopy.h"
#include "core/outing/HeaderProcessing.h"

namespace {

int MathChannelCount(const Workspace& ws) { return std::min<int>(ws.MathCount, static_cast<int>(ws.MathDefs.size())); }

// The channel indices that `text` refers to with `mark` ("$" or "@") and three digits, in order;
// -1 for a reference whose digits don't make a number.
std::vector<int> References(const QString& text, QChar mark) {
  std::vector<int> found;
  for (qsizetype p = text.indexOf(mark); p >= 0; p = text.indexOf(mark, p + 1)) {
    bool ok = false;
    const int index = text.mid(p + 1, 3).toInt(&ok);
    found.push_back(ok ? index : -1);
  }
  return found;
}

}  // namespace

void PrepareOutingMath(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  const int count = MathChannelCount(ws);
  o.Postfix.assign(static_cast<std::size_t>(count), PostfixRec{});
  for (int i = 0; i < count; ++i) {
    const std::size_t index = static_cast<std::size_t>(o.LoggedCount + 3 + i);
    if (index >= o.Channels.size()) break;
    ChannelRec& c = o.Channels[index];
    c.Key = static_cast<uint16_t>(kFirstMathKey + i);
    c.Name = ws.MathDefs[static_cast<std::size_t>(i)].Name;
    c.Rate = 0;
  }
}

void CalcMathRates(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  const int count = MathChannelCount(ws);
  const auto channel_at = [&](int i) -> ChannelRec* {
    const std::size_t index = static_cast<std::size_t>(o.LoggedCount + 3 + i);
    return index < o.Channels.size() ? &o.Channels[index] : nullptr;
  };
  for (int i = 0; i < count; ++i) {
    if (ChannelRec* c = channel_at(i)) c->Rate = 0.001f;
  }
  // Logged and derived operands first, then math operands, which by then have their rates: a
  // channel that names math channels ends at the lowest rate of those alone.
  for (const QChar mark : {QChar('$'), QChar('@')}) {
    for (int i = 0; i < count; ++i) {
      ChannelRec* c = channel_at(i);
      if (!c) continue;
      float working = 1.0f;
      for (const int ref : References(ws.MathDefs[static_cast<std::size_t>(i)].BoundText, mark)) {
        const bool exists = ref >= 0 && ref < static_cast<int>(o.Channels.size());
        const float rate = exists ? o.Channels[static_cast<std::size_t>(ref)].Rate : 0.0f;
        if (!(rate > 0)) {
          c->Rate = 0;  // an operand this outing lacks: the channel isn't available
          break;
        }
        working = std::min(working, rate);
        c->Rate = working;
      }
    }
  }
}

void RecompileOutingMath(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  const int first_math = o.LoggedCount + 3;
  o.LastChannel = static_cast<int16_t>(o.LoggedCount + ws.MathCount + 3);
  const std::size_t size = static_cast<std::size_t>(o.LastChannel) + 1;
  o.Channels.resize(static_cast<std::size_t>(first_math));
  o.Channels.resize(size);
  for (LapRec& lap : o.Laps) {
    lap.LapChannels.resize(static_cast<std::size_t>(first_math));
    lap.LapChannels.resize(size);
  }
  PrepareOutingMath(ws, slot);
  CopyDescriptors(ws, slot, first_math, o.LastChannel);
  AssignMathChannelIDs(ws, slot);
  CompileOutingMath(ws, slot);
  CalcMathRates(ws, slot);
}

void RecompileLoadedOutings(Workspace& ws) {
  const int16_t current = ws.CurFolder;
  int outings = 0;
  for (const FolderRec& folder : ws.FolderTable) {
    for (const OutingRec& o : folder.Outings) outings += o.Loaded != 0;
  }
  // No cancel: outings compiled with different definitions would not compare.
  ProgressScope progress(ws, QStringLiteral("Compiling math channels"), outings, false);
  int done = 0;
  for (int f = 0; f < kFolderCount; ++f) {
    ws.CurFolder = static_cast<int16_t>(f);
    for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
      if (OutingAt(ws, slot).Loaded == 0) continue;
      progress.Step(done++, BaseName(OutingAt(ws, slot).FileName));
      RecompileOutingMath(ws, slot);
    }
  }
  ws.CurFolder = current;
}

void ResetDeltaMathChannels(Workspace& ws) {
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const OutingRec& o = OutingAt(ws, slot);
    if (o.Loaded == 0) continue;
    for (int i = 0; i < static_cast<int>(o.Postfix.size()); ++i) {
      const PostfixRec& rec = o.Postfix[static_cast<std::size_t>(i)];
      const int count = std::min<int>(rec.Count, static_cast<int>(rec.Tokens.size()));
      const bool has_delta = std::any_of(rec.Tokens.begin(), rec.Tokens.begin() + count, [](const PostfixEntry& t) {
        return t.Kind == kTokenOperator && t.Text == QLatin1String("Delta");
      });
      if (has_delta) ClearChannelCache(ws, slot, o.LoggedCount + 3 + i);
    }
  }
}
