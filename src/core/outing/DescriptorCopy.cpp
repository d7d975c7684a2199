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

void CopyFields(const ChannelDescriptor& d, int index, ChannelRec& c) {
  c.Name = d.Name.text.toUpper();
  c.ShortName = CutBlanks(c.Name.left(16));
  c.Units = d.Units.text;
  c.ScreenMin = d.ScreenMin;
  c.ScreenMax = d.ScreenMax;
  c.Group = d.Group;
  c.SmoothWidth = static_cast<int16_t>(d.SmoothWidth);
  c.Security = d.Security;
  c.AutoScale = d.AutoScale;
  c.StandardCode = d.StandardCode;
  c.Decimals = d.Decimals;
  c.Color = d.Color;
  c.FftDecimals = d.FftDecimals;
  c.SourceGroup = d.SourceGroup;
  c.DscIndex = static_cast<uint16_t>(index);
  c.EventLimit = d.EventLimit;
  c.EventHigh = d.EventHigh;
  c.EventEnabled = static_cast<uint16_t>(d.EventEnabled);
  c.EventFlags = d.EventFlags;
  c.FftAutoScale = d.FftAutoScale;
  c.FilterKind = static_cast<int16_t>(d.FilterKind);
  c.FilterWindow = static_cast<int16_t>(d.FilterWindow);
  c.FilterKernel = static_cast<int16_t>(d.FilterKernel);
  c.FilterLowCut = static_cast<int16_t>(d.FilterLowCut);
  c.FilterHighCut = static_cast<int16_t>(d.FilterHighCut);
  c.PrecisionMode = d.PrecisionMode;
  c.TileBottom = d.TileBottom;
  c.TileTop = d.TileTop;
  c.FftScaleMin = d.FftScaleMin;
  c.FftScaleMax = d.FftScaleMax;
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
  d.ScreenMin = c.ScreenMin;
  d.ScreenMax = c.ScreenMax;
  d.Group = c.Group;
  d.SmoothWidth = static_cast<uint16_t>(c.SmoothWidth);
  d.Security = c.Security;
  d.AutoScale = c.AutoScale;
  d.StandardCode = c.StandardCode;
  d.Decimals = c.Decimals;
  d.Color = c.Color;
  d.FftDecimals = c.FftDecimals;
  d.SourceGroup = c.SourceGroup;
  d.EventLimit = c.EventLimit;
  d.EventHigh = c.EventHigh;
  d.EventEnabled = static_cast<int16_t>(c.EventEnabled);
  d.EventFlags = c.EventFlags;
  d.FftAutoScale = c.FftAutoScale;
  d.FilterKind = static_cast<uint16_t>(c.FilterKind);
  d.FilterWindow = static_cast<uint16_t>(c.FilterWindow);
  d.FilterKernel = static_cast<uint16_t>(c.FilterKernel);
  d.FilterLowCut = static_cast<uint16_t>(c.FilterLowCut);
  d.FilterHighCut = static_cast<uint16_t>(c.FilterHighCut);
  d.PrecisionMode = c.PrecisionMode;
  d.TileBottom = c.TileBottom;
  d.TileTop = c.TileTop;
  d.FftScaleMin = c.FftScaleMin;
  d.FftScaleMax = c.FftScaleMax;
  QString error;
  if (!WriteFileAtomically(ChannelDscPath(ws), ChannelDescriptorFileBytes(file), &error)) {
    ws.messages.Show(error, QStringLiteral("Write Channels"), MessageIcon::Exclamation);
    return false;
  }
  return ReadChannelDescriptors(ws);
}
