// The spectrogram spans the folder's time view and moves the folder's cursor.

#include <gtest/gtest.h>

#include "GraphFixture.h"
#include "core/plots/PlotScale.h"
#include "core/plots/frmSpectrogram.h"

namespace {

using namespace test_outings;

TEST(Spectrogram, ColumnsOverTheTimeViewAndTheCursorByClick) {
  GraphFixture g;  // 1,000 samples a second
  g.folder().TimeStart = 1000;
  g.folder().TimeEnd = 3000;
  g.folder().Options.SpectrogramPoints = 300;  // not a power of two: 256
  g.folder().Options.SpectrogramOverlap = 75;
  frmSpectrogram plot(g.b.ws, g.surface);
  plot.DrawSpectrogram();
  EXPECT_EQ(plot.WindowPoints(), 256);
  EXPECT_EQ(plot.StepSamples(), 64);
  ASSERT_FALSE(plot.Data.Columns.empty());
  EXPECT_EQ(plot.Data.Starts.front(), 1000);
  EXPECT_LE(plot.Data.Starts.back() + 256, 3001);  // sample 3000 is the view's last
  EXPECT_GT(plot.Data.Starts.back() + 256 + 64, 3001);
  EXPECT_TRUE(plot.Caption.startsWith("Spectrogram - RAMP - (")) << plot.Caption.toStdString();

  EXPECT_FALSE(plot.MouseDown(kPlotLeft - 1));
  EXPECT_TRUE(plot.MouseDown(kPlotLeft));
  EXPECT_EQ(g.folder().CursorTime, 1000);
}

}  // namespace
