#include "core/outing/DescriptorCopy.h"

#include "core/app/Files.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"

namespace {

QString CutBlanks(QString s) {
  while (s.endsWith(' ')) s.chop(1);
  return s;
}

// Names match on their first 16 characters, upper-cased, trailing blanks cut.
QString MatchKey(const QString& name) { return CutBlanks(name).toUpper().left(16); }

// The records' names as they match, made once per copy (and again after an append).
class RecordNames {
 public:
  explicit RecordNames(Workspace& ws) : ws_(ws) {}

  // The record for `name`, searched from `from`; appended when none matches. -1 on failure.
  int FindOrAppend(const QString& name, int from) {
    if (keys_.size() != ws_.ChannelDsc.size()) Rebuild();
    const QString key = MatchKey(name);
    for (int r = from; r < static_cast<int>(keys_.size()); ++r) {
      if (keys_[static_cast<std::size_t>(r)] == key) return r;
    }
    if (!AppendDescriptor(ws_, CutBlanks(name))) return -1;
    return ws_.ChannelDscCount - 1;
  }

 private:
  void Rebuild() {
    keys_.clear();
    for (ChannelDescriptor& d : ws_.ChannelDsc) {
      d.Name = CutBlanks(d.Name.text);
      keys_.push_back(MatchKey(d.Name.text));
    }
  }

  Workspace& ws_;
  std::vector<QString> keys_;
};

// The display fields that a channel takes from its descriptor and gives back after an edit,
// each pair once: f(descriptor field, channel field).
template <class D, class C, class F>
void ForEachDisplayField(D& d, C& c, F&& f) {
  f(d.ScreenMin, c.ScreenMin);
  f(d.ScreenMax, c.ScreenMax);
  f(d.Group, c.Group);
  f(d.SmoothWidth, c.SmoothWidth);
  f(d.Security, c.Security);
  f(d.AutoScale, c.AutoScale);
  f(d.StandardCode, c.StandardCode);
  f(d.Decimals, c.Decimals);
  f(d.Color, c.Color);
  f(d.FftDecimals, c.FftDecimals);
  f(d.SourceGroup, c.SourceGroup);
  f(d.EventLimit, c.EventLimit);
  f(d.EventHigh, c.EventHigh);
  f(d.EventEnabled, c.EventEnabled);
  f(d.EventFlags, c.EventFlags);
  f(d.FftAutoScale, c.FftAutoScale);
  f(d.FilterKind, c.FilterKind);
  f(d.FilterWindow, c.FilterWindow);
  f(d.FilterKernel, c.FilterKernel);
  f(d.FilterLowCut, c.FilterLowCut);
  f(d.FilterHighCut, c.FilterHighCut);
  f(d.PrecisionMode, c.PrecisionMode);
  f(d.TileBottom, c.TileBottom);
  f(d.TileTop, c.TileTop);
  f(d.FftScaleMin, c.FftScaleMin);
  f(d.FftScaleMax, c.FftScaleMax);
}

// Plain assignment between the 16-bit fields: both sides keep the same bits.
template <class To, class From>
void Assign(To& to, const From& from) {
  to = static_cast<To>(from);
}

void CopyFields(const ChannelDescriptor& d, int index, ChannelRec& c) {
  c.Name = d.Name.text.toUpper();
  c.ShortName = CutBlanks(c.Name.left(16));
  c.Units = d.Units.text;
  c.DscIndex = static_cast<uint16_t>(index);
  ForEachDisplayField(d, c, [](const auto& from, auto& to) { Assign(to, from); });
}

}  // namespace

bool CopyDescriptors(Workspace& ws, int slot, int first, int last) {
  OutingRec& o = OutingAt(ws, slot);
  RecordNames names(ws);
  for (int i = first; i < last; ++i) {
    ChannelRec& c = o.Channels[static_cast<std::size_t>(i)];
    int record = -1;
    if (c.Key <= 63) {
      QString& input = ws.OutingHdr.InputNames[c.Key].text;
      input = CutBlanks(input);
      record = names.FindOrAppend(input, 0);
    } else if (c.Key < kFirstMathKey) {
      record = c.Key < ws.ChannelDscCount ? c.Key : -1;
    } else {
      record = names.FindOrAppend(c.Name, 1023);
    }
    if (record < 0) return false;  // the file lacks the keyed record: the load cannot go on
    CopyFields(ws.ChannelDsc[static_cast<std::size_t>(record)], record, c);
  }
  return true;
}

bool WriteDescriptorFromChannel(Workspace& ws, const ChannelRec& c) {
  if (c.DscIndex >= ws.ChannelDsc.size()) return false;
  ChannelDescriptorFile file;
  file.Head = ws.DscHead;
  file.Records = ws.ChannelDsc;
  ChannelDescriptor& d = file.Records[c.DscIndex];
  d.Name = c.Name;
  d.Units = c.Units;
  ForEachDisplayField(d, c, [](auto& to, const auto& from) { Assign(to, from); });
  QString error;
  if (!WriteFileAtomically(ChannelDscPath(ws), ChannelDescriptorFileBytes(file), &error)) {
    ws.messages.Show(error, QStringLiteral("Write Channels"), MessageIcon::Exclamation);
    return false;
  }
  return ReadChannelDescriptors(ws);
}
