// The options dialog: what it refuses, and what OK puts in force and in the store.

#include "../TestOutings.h"
#include "core/app/frmOptions.h"

using namespace test_outings;

namespace {

const frmOptions::Check& CheckNamed(const char* name) {
  for (const auto& c : frmOptions::kChecks) {
    if (QLatin1String(c.Name) == QLatin1String(name)) return c;
  }
  throw std::runtime_error(name);
}

TEST(frmOptionsTest, RefusesPercentsAndCustomColoursThatCannotWork) {
  const struct {
    const char *zoom, *scroll;
    int theme, background, foreground;
    const char* message;  // nullptr: accepted
  } cases[] = {
      {"50", "25", 0, 0, 0, nullptr},  // equal custom colours matter only in the custom theme
      {"1", "100", 2, 16777215, 0, nullptr},
      {"99.5", "25", 0, 0, 0, "Zoom percent must be between 1 and 99"},
      {"abc", "25", 0, 0, 0, "Zoom percent must be between 1 and 99"},
      {"50", "101", 0, 0, 0, "Scroll percent must be between 1 and 100"},
      {"50", "25", 2, 255, 255, "Background and foreground must differ"},
  };
  for (const auto& c : cases) {
    BareWorkspace b;
    frmOptions form(b.ws);
    form.txtZoomPercent = QString::fromLatin1(c.zoom);
    form.txtScrollPercent = QString::fromLatin1(c.scroll);
    form.Values.ColorTheme = c.theme;
    form.Values.CustomBackground = c.background;
    form.Values.CustomForeground = c.foreground;
    EXPECT_EQ(form.cmdOK(b.ws), c.message == nullptr) << c.zoom << " " << c.scroll;
    if (c.message == nullptr) {
      EXPECT_EQ(b.ws.Options.ZoomPercent, QString::fromLatin1(c.zoom).toDouble());
      EXPECT_EQ(b.ws.Options.ColorTheme, c.theme);
      continue;
    }
    EXPECT_EQ(LastMessage(b.messages).text, QString::fromLatin1(c.message));
    EXPECT_EQ(LastMessage(b.messages).title, QStringLiteral("Options"));
    EXPECT_EQ(b.ws.Options.ZoomPercent, 50);  // nothing changed
  }
}

TEST(frmOptionsTest, OkPutsTheOptionsInTheStoreAndMaskLapBeaconsIsProcessBeaconOff) {
  BareWorkspace b;
  frmOptions form(b.ws);
  EXPECT_FALSE(form.Checked(CheckNamed("chkMaskBeacons")));  // beacons are processed by default
  form.SetChecked(CheckNamed("chkMaskBeacons"), true);
  form.SetChecked(CheckNamed("chkHorizontalGrid"), false);
  form.SetChecked(CheckNamed("chkEventMarkers"), true);
  form.txtScrollPercent = QStringLiteral("40");
  ASSERT_TRUE(form.cmdOK(b.ws));
  EXPECT_FALSE(b.ws.Options.ProcessBeacon);
  const SettingsStore& s = b.ws.Settings;
  EXPECT_FALSE(s.ReadBool(kAppAnalysis, "UserOptions", "ProcessBeacon", true));
  EXPECT_FALSE(s.ReadBool(kAppAnalysis, "UserOptions", "HorizontalGrid", true));
  EXPECT_TRUE(s.ReadBool(kAppAnalysis, "UserOptions", "EventMarkers", false));
  EXPECT_EQ(s.ReadDouble(kAppAnalysis, "UserOptions", "ScrollPercent", 0), 40);
  EXPECT_TRUE(frmOptions(b.ws).Checked(CheckNamed("chkMaskBeacons")));
}

}  // namespace
