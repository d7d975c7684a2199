// A channel's colour and event: what the dialogs store, where,
// and what they leave alone.

#include "../TestOutings.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotScale.h"
#include "core/plots/frmChlColor.h"
#include "core/plots/frmEventEdit.h"

using namespace test_outings;

namespace {

// The same demo outing in slots 0 and 1 of folder 0, its RPM selected in slot 0; each test has
// its own CHANNEL.DSC and settings.
class ChannelSettingsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const QString demo = SharedDemoOuting(QStringLiteral("SILV0101.DAT"), 3).path;
    ASSERT_TRUE(home.Load(0, demo));
    ASSERT_TRUE(home.Load(1, demo));
    rpm = FindChannelByName(ws(), 0, 0, QStringLiteral("RPM"));
    ASSERT_GE(rpm, 0);
    ws().CurOuting = 0;
    ws().FolderTable[0].SelOuting = 0;
    ws().FolderTable[0].SelChannel = static_cast<int16_t>(rpm);
  }
  Workspace& ws() { return home.ws(); }
  ChannelRec& Rpm(int slot) { return OutingAt(ws(), slot).Channels[static_cast<std::size_t>(rpm)]; }
  QByteArray Dsc() {
    QFile f(ChannelDscPath(ws()));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
  }
  ChannelDescriptor Record() {
    ChannelDescriptorFile file;
    EXPECT_TRUE(ReadChannelDescriptorFile(ChannelDscPath(ws()), file));
    return file.Records.at(Rpm(0).DscIndex);
  }

  TestHome home;
  int rpm = -1;
};

TEST_F(ChannelSettingsTest, AnEventGoesToTheChannelInEveryOutingAndToChannelDsc) {
  const QByteArray before = Dsc();
  frmEventEdit refused(ws());
  refused.txtLimit = QStringLiteral("4k5");
  EXPECT_FALSE(refused.cmdOK());
  EXPECT_EQ(LastMessage(home.messages).text, QStringLiteral("The event limit must be a number"));
  EXPECT_EQ(LastMessage(home.messages).title, frmEventEdit::kTitle);
  EXPECT_EQ(Dsc(), before);

  frmEventEdit form(ws());
  EXPECT_EQ(form.ChannelName(), QStringLiteral("RPM"));
  form.Condition = 1;
  form.txtLimit = QStringLiteral(" 11500.5 ");
  form.chkEnabled = true;
  form.chkMaximum = true;
  ASSERT_TRUE(form.cmdOK());
  for (int slot : {0, 1}) {
    EXPECT_FLOAT_EQ(Rpm(slot).EventLimit, 11500.5f) << slot;
    EXPECT_NE(Rpm(slot).EventEnabled, 0) << slot;
    EXPECT_EQ(Rpm(slot).EventFlags & 0x3FF, 0x201) << slot;
  }
  const ChannelDescriptor d = Record();
  EXPECT_FLOAT_EQ(d.EventLimit, 11500.5f);
  EXPECT_EQ(d.EventEnabled, -1);
  EXPECT_EQ(d.EventFlags & 0x3FF, 0x201);
  // Opened again, the dialog shows what was stored.
  const frmEventEdit again(ws());
  EXPECT_EQ(again.Condition, 1);
  EXPECT_EQ(again.txtLimit, QStringLiteral("11500.5"));
  EXPECT_TRUE(again.chkEnabled && again.chkMaximum && !again.chkMinimum);
}

TEST_F(ChannelSettingsTest, AColourGoesToTheTraceAndWithDefaultToTheChannelEverywhere) {
  const std::pair<bool, int> cases[] = {{false, 4}, {true, 9}};
  const int own = Rpm(0).Color;
  // A trace without a colour of its own opens on the channel's.
  EXPECT_EQ(frmChlColor(ws(), 0, 1, rpm).Selected, own);
  for (const auto& [by_default, pick] : cases) {
    const QByteArray before = Dsc();
    frmChlColor form(ws(), 0, 1, rpm);
    EXPECT_TRUE(form.HasChannel());
    form.Selected = pick;
    form.chkDefault = by_default;
    ASSERT_TRUE(form.cmdOK());
    EXPECT_EQ(OutingAt(ws(), 0).Laps[1].LapChannels[static_cast<std::size_t>(rpm)].Color, pick);
    EXPECT_EQ(OutingAt(ws(), 0).Laps[2].LapChannels[static_cast<std::size_t>(rpm)].Color, -1);  // that trace only
    EXPECT_EQ(GetChannelColor(ws(), 0, 1, rpm), ws().Palette[static_cast<std::size_t>(pick)]);
    const int channel_color = by_default ? pick : own;
    EXPECT_EQ(Rpm(0).Color, channel_color);
    EXPECT_EQ(Rpm(1).Color, channel_color);
    EXPECT_EQ(Record().Color, channel_color);
    // Of the records in CHANNEL.DSC only the channel's Color field (offset 68 of its record) may change.
    const QByteArray after = Dsc();
    ASSERT_EQ(after.size(), before.size());
    const qsizetype color_at = kChannelDscHeadSize + qsizetype{kChannelDscRecordSize} * Rpm(0).DscIndex + 68;
    for (qsizetype i = kChannelDscHeadSize; i < after.size(); ++i) {
      if (i != color_at && after[i] != before[i]) FAIL() << "byte " << i << " changed";
    }
  }
  // The trace's own colour is the one picked when the dialog opens.
  EXPECT_EQ(frmChlColor(ws(), 0, 1, rpm).Selected, 9);
}

}  // namespace
