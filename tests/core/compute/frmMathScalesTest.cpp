#include "core/compute/frmMathScales.h"

#include <gtest/gtest.h>

#include "../TestOutings.h"

namespace {

using namespace test_outings;

// One math channel, compiled into two small outings of a home with the factory CHANNEL.DSC.
struct LoadedHome {
  LoadedHome() { LoadSpeedOutings(home, QStringLiteral("Double[001] = SYSTEM SPEED * 2"), {0, 1}); }
  Workspace& ws() { return home.ws(); }
  // The math channel stands behind the logged and the three derived channels.
  const ChannelRec& Math(int slot) {
    const OutingRec& o = home.Outing(slot);
    return o.Channels.at(static_cast<std::size_t>(o.LoggedCount + 3));
  }
  QByteArray Dsc() {
    QByteArray bytes;
    ReadFileBytes(ChannelDscPath(ws()), 0, 1 << 24, bytes);
    return bytes;
  }
  TestHome home;
};

TEST(frmMathScales, TheBoxesAreCheckedBeforeAnythingIsWritten) {
  const char* kNumbers = "The scale's minimum and maximum must be numbers";
  const char* kOrder = "The scale's maximum must be above its minimum";
  struct Case {
    const char* min;
    const char* max;
    const char* message;  // null: stored
  } cases[] = {
      {"-5", "15", nullptr}, {" 0.5 ", "2e3", nullptr}, {"", "10", kNumbers}, {"1,5", "10", kNumbers},
      {"0", "inf", kNumbers}, {"3", "3", kOrder},   {"10", "-10", kOrder},
  };
  for (const Case& k : cases) {
    LoadedHome h;
    const QByteArray before = h.Dsc();
    frmMathScales f;
    ASSERT_TRUE(f.Form_Load(h.ws(), QStringLiteral("Double")));
    EXPECT_EQ(f.Caption(), "Math Scales - DOUBLE");
    f.txtMin = QString::fromLatin1(k.min);
    f.txtMax = QString::fromLatin1(k.max);
    f.txtUnits = QStringLiteral("km/h x 2");
    EXPECT_EQ(f.cmdOK(h.ws()), k.message == nullptr) << k.min << " " << k.max;
    EXPECT_EQ(LastMessage(h.home.messages).text, k.message ? k.message : "") << k.min << " " << k.max;
    if (k.message) {
      EXPECT_EQ(h.Dsc(), before) << k.min;
    }
  }
}

TEST(frmMathScales, StoredForEveryOutingAndTheNextStart) {
  LoadedHome h;
  frmMathScales f;
  ASSERT_TRUE(f.Form_Load(h.ws(), QStringLiteral("double")));
  f.txtUnits = QStringLiteral("km/h");
  f.txtMin = QStringLiteral("-20");
  f.txtMax = QStringLiteral("640");
  f.chkAutoScale = true;
  f.cboDecimals = 3;
  f.Color = 7;
  ASSERT_TRUE(f.cmdOK(h.ws()));
  for (int slot : {0, 1}) {
    const ChannelRec& c = h.Math(slot);
    EXPECT_EQ(c.Units, "km/h");
    EXPECT_EQ(c.ScreenMin, -20.0f);
    EXPECT_EQ(c.ScreenMax, 640.0f);
    EXPECT_NE(c.AutoScale, 0);
    EXPECT_EQ(c.Decimals, 3);
    EXPECT_EQ(c.Color, 7);
  }
  ChannelDescriptorFile file;
  ASSERT_TRUE(ReadChannelDescriptorFile(ChannelDscPath(h.ws()), file));
  const ChannelDescriptor& d = file.Records.at(h.Math(0).DscIndex);
  EXPECT_EQ(d.Name.text.trimmed(), "DOUBLE");
  EXPECT_EQ(d.Units.text.trimmed(), "km/h");
  EXPECT_EQ(d.ScreenMax, 640.0f);
  EXPECT_EQ(d.Color, 7);

  // The window opens again on what was stored; a name no outing holds has nothing to show.
  frmMathScales again;
  ASSERT_TRUE(again.Form_Load(h.ws(), QStringLiteral("Double")));
  EXPECT_EQ(again.txtMax, "640");
  EXPECT_EQ(again.cboDecimals, 3);
  EXPECT_FALSE(again.Form_Load(h.ws(), QStringLiteral("Triple")));
  EXPECT_EQ(LastMessage(h.home.messages).title, "Math Scales");
}

}  // namespace
