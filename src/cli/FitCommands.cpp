// `orlan xy FILE --lap N --x CH --y CH [--start MS --end MS] [--json]`: the points of one channel
// against another and their fits, as the XY plot computes them. Without --start and --end the
// view is the whole lap; either is rounded to whole ms.
// `orlan histogram FILE --lap N --channel CH [--start MS --end MS] [--bins B] [--json]`: the bins
// of a channel over the view, as the histogram window counts them.

#include <cstdio>
#include <nlohmann/json.hpp>

#include "cli/CliWorkspace.h"
#include "core/app/Numbers.h"
#include "cli/Commands.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotScale.h"
#include "core/plots/RecordingSurface.h"
#include "core/plots/frmHisto.h"
#include "core/plots/frmXYPlot.h"
#include "core/track/DistanceTime.h"

using nlohmann::ordered_json;

namespace {

struct FitOptions {
  std::string file;
  int lap = 1;
  std::string x = "System Speed", y, channel;
  double start = -1, end = -1;  // ms from the lap's start; -1: the whole lap
  int bins = 0;
  bool json = false;
};

// Loads the outing into slot 0 and shows `channel` on lap `lap` with the time view asked for;
// the channel's index, or -1 after a message on stderr.
int Prepare(Workspace& ws, const FitOptions& opt, const std::string& name) {
  if (!LoadCliOuting(ws, QString::fromStdString(opt.file))) return -1;
  OutingRec& o = OutingAt(ws, 0);
  const int c = FindChannelByName(ws, 0, 0, QString::fromStdString(name));
  if (c < 0) {
    std::fprintf(stderr, "no channel %s\n", name.c_str());
    return -1;
  }
  if (opt.lap < 0 || opt.lap >= o.LastLap) {
    std::fprintf(stderr, "lap %d is not one of 0..%d\n", opt.lap, o.LastLap - 1);
    return -1;
  }
  for (LapRec& l : o.Laps) l.Shown = 0;
  o.CurLap = static_cast<int16_t>(opt.lap);
  LapRec& lap = o.Laps[static_cast<std::size_t>(opt.lap)];
  lap.Shown = -1;
  lap.LapChannels[static_cast<std::size_t>(c)].Shown = -1;
  FolderRec& folder = ws.FolderTable[0];
  folder.SelOuting = 0;
  folder.ActiveChannel = static_cast<int16_t>(c);
  // One lap, whatever the settings keep for the window: the view is that lap or a part of it.
  folder.LapsDisplayed = 1;
  folder.TimeStart = opt.start >= 0 ? SaturateInt32(RoundHalfEven(opt.start)) : 0;
  folder.TimeEnd = SaturateInt32(RoundHalfEven(opt.end >= 0 ? opt.end : GetLapDuration(ws, 0, opt.lap)));
  return c;
}

// The view as the window sees it, in whole ms.
void AddView(ordered_json& j, const Workspace& ws) {
  j["TimeStart"] = ws.FolderTable[0].TimeStart;
  j["TimeEnd"] = ws.FolderTable[0].TimeEnd;
}

int RunXY(CliContext& context, const FitOptions& opt) {
  StderrMessages messages;
  auto ws = StartCliWorkspace(context, messages);
  if (!ws) return 1;
  ws->FolderTable[0].Options.AxisXYChannel = QString::fromStdString(opt.x);
  if (Prepare(*ws, opt, opt.y) < 0) return 1;
  RecordingSurface surface(24000, 13500);
  frmXYPlot plot(*ws, surface);
  plot.FindXChannels();
  if (plot.XChannel(0) < 0) {
    std::fprintf(stderr, "no channel %s\n", opt.x.c_str());
    return 1;
  }
  // The window's own fits, so that the numbers are the ones its texts show.
  const std::size_t points = plot.ActivePoints().size();
  plot.LinearRegression();
  plot.PolynomialRegression();
  ordered_json j;
  AddView(j, *ws);
  j["Points"] = points;
  j["LineFit"] = !plot.LineText.isEmpty();
  j["Slope"] = plot.Slope;
  j["Intercept"] = plot.Intercept;
  j["Correlation"] = plot.Correlation;
  j["CurveFit"] = !plot.CurveText.isEmpty();
  j["PolyA"] = plot.PolyA;
  j["PolyB"] = plot.PolyB;
  j["PolyC"] = plot.PolyC;
  j["PolyCorrelation"] = plot.PolyCorrelation;
  if (opt.json) {
    std::printf("%s\n", j.dump(2).c_str());
  } else {
    std::printf("%zu points\n%s\n%s\n", points, plot.LineText.toStdString().c_str(), plot.CurveText.toStdString().c_str());
  }
  return 0;
}

int RunHistogram(CliContext& context, const FitOptions& opt) {
  StderrMessages messages;
  auto ws = StartCliWorkspace(context, messages);
  if (!ws) return 1;
  if (opt.bins > 0) ws->FolderTable[0].Options.HistoBins = opt.bins;
  const int c = Prepare(*ws, opt, opt.channel);
  if (c < 0) return 1;
  GetChannelData(*ws, 0, opt.lap, c);
  RecordingSurface surface(24000, 13500);
  frmHisto histo(*ws, surface);
  histo.CalcHistogram(0, opt.lap, c);
  const OutingRec& o = OutingAt(*ws, 0);
  const ChannelRec& ch = o.Channels[static_cast<std::size_t>(c)];
  const LapChannelRec& cache = o.Laps[static_cast<std::size_t>(opt.lap)].LapChannels[static_cast<std::size_t>(c)];
  ordered_json bins = ordered_json::array();
  for (int b = 0; b + 1 < static_cast<int>(cache.Bins.size()); ++b) {
    const HistoBin& bin = cache.Bins[static_cast<std::size_t>(b)];
    bins.push_back({{"Low", bin.Low}, {"High", bin.High}, {"Count", bin.Count}});
  }
  ordered_json j;
  AddView(j, *ws);
  j["Channel"] = ch.Name.trimmed().toStdString();
  j["ScreenMin"] = ch.ScreenMin;
  j["ScreenMax"] = ch.ScreenMax;
  j["BinSamples"] = cache.BinSamples;
  j["Bins"] = bins;
  if (opt.json) {
    std::printf("%s\n", j.dump(2).c_str());
    return 0;
  }
  std::printf("%s: %d samples, %g to %g\n", j["Channel"].get<std::string>().c_str(), cache.BinSamples, ch.ScreenMin, ch.ScreenMax);
  for (const auto& b : bins) {
    std::printf("%12g %12g %8d\n", b["Low"].get<double>(), b["High"].get<double>(), b["Count"].get<int>());
  }
  return 0;
}

}  // namespace

void AddFitCommands(CLI::App& cli, CliContext& context) {
  auto xy = std::make_shared<FitOptions>();
  CLI::App* sub = cli.add_subcommand("xy", "The fits of one channel against another over a lap, as the XY plot makes them");
  sub->add_option("FILE", xy->file, "Outing file")->required();
  sub->add_option("--lap", xy->lap, "Lap index (0 is the out lap)")->required();
  sub->add_option("--x", xy->x, "The x channel (default System Speed)");
  sub->add_option("--y", xy->y, "The y channel")->required();
  sub->add_option("--start", xy->start, "Start of the view, ms from the lap's start");
  sub->add_option("--end", xy->end, "End of the view, ms from the lap's start");
  sub->add_flag("--json", xy->json, "Print one JSON object, for scripts");
  AddHomeOption(*sub, context);
  sub->callback([&context, xy] { context.exit_code = RunXY(context, *xy); });

  auto histo = std::make_shared<FitOptions>();
  sub = cli.add_subcommand("histogram", "The bins of a channel over a lap, as the histogram window counts them");
  sub->add_option("FILE", histo->file, "Outing file")->required();
  sub->add_option("--lap", histo->lap, "Lap index (0 is the out lap)")->required();
  sub->add_option("--channel", histo->channel, "The channel")->required();
  sub->add_option("--start", histo->start, "Start of the view, ms from the lap's start");
  sub->add_option("--end", histo->end, "End of the view, ms from the lap's start");
  sub->add_option("--bins", histo->bins, "Number of bins (default: the folder's setting)")->check(CLI::Range(1, 1000));
  sub->add_flag("--json", histo->json, "Print one JSON object, for scripts");
  AddHomeOption(*sub, context);
  sub->callback([&context, histo] { context.exit_code = RunHistogram(context, *histo); });
}
