// `orlan plot OUTING [OUTING...] --channels A,B --laps fast|all|N,M [--kind time|distance|xy|histogram|
// spectrum|spectrogram|track|contour|track-report] [--x CHANNEL] [--map MAP] [--tile] [--theme light|dark]
// [--start S --end E] [--width W --height H] --out graph.png`: a plot window drawn offscreen into a
// picture, by the same classes and QtSurface that the window uses.

#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdio>
#include <memory>

#include "cli/CliWorkspace.h"
#include "cli/Commands.h"
#include "core/app/Numbers.h"
#include "core/outing/OpenOuting.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotScale.h"
#include "core/plots/PlotView.h"
#include "core/plots/frmDistance.h"
#include "core/plots/frmGraph.h"
#include "core/plots/frmHisto.h"
#include "core/plots/frmFrequency.h"
#include "core/plots/frmSpectrogram.h"
#include "core/plots/frmXYPlot.h"
#include "core/track/DistanceTime.h"
#include "core/track/TrackFile.h"
#include "core/track/frmContour.h"
#include "core/track/frmTrackReport.h"
#include "core/track/frmViewTrack.h"
#include "render/QtSurface.h"

namespace {

struct PlotOptions {
  std::vector<std::string> files;
  std::string channels;
  std::string laps = "fast";
  bool tile = false;
  std::string theme = "light";
  std::string kind = "time";
  std::string x = "System Speed";
  std::string map;  // the map of the track windows; empty: the folder's
  double start = -1, end = -1;  // seconds from the lap's start; -1: the whole span
  int width = 1600, height = 900;
  std::string out;
};

QStringList SplitList(const std::string& list) {
  QStringList parts = QString::fromStdString(list).split(',', Qt::SkipEmptyParts);
  for (QString& p : parts) p = p.trimmed();
  return parts;
}

// The laps `spec` names in the outing: its fast lap, every timed lap, or the listed indices.
bool PickLaps(const OutingRec& o, const std::string& spec, std::vector<int>& laps) {
  if (spec == "fast") {
    laps.push_back(o.FastLap);
  } else if (spec == "all") {
    for (int l = 1; l + 1 < o.LastLap; ++l) laps.push_back(l);
    if (laps.empty()) laps.push_back(0);
  } else {
    for (const QString& text : SplitList(spec)) {
      bool ok = false;
      const int l = text.toInt(&ok);
      if (!ok || l < 0 || l >= o.LastLap) return false;
      laps.push_back(l);
    }
  }
  return !laps.empty();
}

// Shows the laps and channels in the outing's slot; each trace gets a palette colour of its own.
bool ShowTraces(Workspace& ws, int slot, const PlotOptions& opt) {
  OutingRec& o = OutingAt(ws, slot);
  std::vector<int> laps;
  if (!PickLaps(o, opt.laps, laps)) {
    std::fprintf(stderr, "%s: no lap %s\n", o.FileName.toLocal8Bit().constData(), opt.laps.c_str());
    return false;
  }
  std::vector<int> channels;
  for (const QString& name : SplitList(opt.channels)) {
    const int c = FindChannelByName(ws, ws.CurFolder, slot, name);
    if (c < 0) {
      std::fprintf(stderr, "%s: no channel %s\n", o.FileName.toLocal8Bit().constData(), name.toLocal8Bit().constData());
      return false;
    }
    channels.push_back(c);
  }
  for (int l : laps) {
    LapRec& lap = o.Laps[static_cast<std::size_t>(l)];
    lap.Shown = -1;
    for (int c : channels) {
      lap.LapChannels[static_cast<std::size_t>(c)].Shown = -1;
    }
  }
  o.CurLap = static_cast<int16_t>(laps.front());
  if (slot == 0) ws.FolderTable[0].ActiveChannel = static_cast<int16_t>(channels.front());
  return true;
}

// The traces' captions along the bottom strip, each in its trace's colour.
void DrawLegend(Workspace& ws, Surface& s) {
  double x = kPlotLeft;
  const FolderRec& folder = ws.FolderTable[0];
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
    if (o.Loaded == 0) continue;
    for (int l = 0; l < static_cast<int>(o.Laps.size()); ++l) {
      const LapRec& lap = o.Laps[static_cast<std::size_t>(l)];
      if (lap.Shown == 0) continue;
      for (int c = 0; c < static_cast<int>(lap.LapChannels.size()); ++c) {
        if (lap.LapChannels[static_cast<std::size_t>(c)].Shown == 0) continue;
        const QString text = QStringLiteral("%1 lap %2: %3").arg(QFileInfo(o.FileName).fileName()).arg(l).arg(o.Channels[static_cast<std::size_t>(c)].Name.trimmed());
        s.ForeColor = GetChannelColor(ws, slot, l, c);
        s.CurrentX = x;
        s.CurrentY = s.ScaleHeight() - 250;
        s.Print(text);
        x += s.TextWidth(text) + 300;
      }
    }
  }
}

int RunPlot(CliContext& context, const PlotOptions& opt) {
  StderrMessages messages;
  auto ws = StartCliWorkspace(context, messages);
  if (!ws) return 1;
  if (opt.files.size() > static_cast<std::size_t>(kOutingsPerFolder)) {
    std::fprintf(stderr, "At most %d outings go into one folder\n", kOutingsPerFolder);
    return 1;
  }
  if (!opt.map.empty() && !LoadTrackFile(*ws, QString::fromStdString(opt.map))) return 1;
  for (std::size_t i = 0; i < opt.files.size(); ++i) {
    ws->CurFolder = 0;
    ws->CurOuting = static_cast<int16_t>(i);
    if (!OpenOuting(*ws, QString::fromStdString(opt.files[i]))) return 1;
    if (!ShowTraces(*ws, static_cast<int>(i), opt)) return 1;
  }
  FolderRec& folder = ws->FolderTable[0];
  folder.InUse = -1;
  folder.SelOuting = 0;
  ws->CurOuting = 0;
  folder.Options.TileGraphs = opt.tile;
  folder.Options.AxisXYChannel = QString::fromStdString(opt.x);
  ws->Options.ColorTheme = opt.theme == "dark" ? 1 : 0;
  GetTileCount(*ws);
  // Each lap on its own axis, whatever the settings keep for the windows.
  folder.LapsDisplayed = 1;
  const bool distance = opt.kind == "distance";
  const double max_ms = GetMaxTime(*ws);
  folder.TimeStart = !distance && opt.start >= 0 ? SaturateInt32(RoundHalfEven(opt.start * 1000)) : 0;
  folder.TimeEnd = SaturateInt32(RoundHalfEven(!distance && opt.end >= 0 ? opt.end * 1000 : max_ms));
  folder.CursorTime = static_cast<float>(folder.TimeStart + folder.TimeEnd) / 2;
  folder.DistanceStart = distance && opt.start >= 0 ? static_cast<float>(opt.start) : 0;
  folder.DistanceEnd = distance && opt.end >= 0 ? static_cast<float>(opt.end) : GetMaxDistance(*ws);
  folder.CursorDistance = (folder.DistanceStart + folder.DistanceEnd) / 2;
  ws->Plots.ActivePlotType = distance ? 1 : 0;

  QImage image(opt.width, opt.height, QImage::Format_RGB32);
  QPainter painter(&image);
  QtSurface surface(painter, image.size());
  if (opt.map.empty()) LoadFolderTrack(*ws);
  if (ws->Track.TrackPoints.empty() && (opt.kind == "track" || opt.kind == "contour" || opt.kind == "track-report")) {
    std::fprintf(stderr, "No map: give one with --map\n");
    return 1;
  }
  if (opt.kind == "xy") {
    frmXYPlot(*ws, surface).DrawXYPlots();
  } else if (opt.kind == "histogram") {
    frmHisto(*ws, surface).DrawHistograms();
  } else if (opt.kind == "spectrum") {
    frmFrequency(*ws, surface).DoFrequencyPlot();
  } else if (opt.kind == "spectrogram") {
    frmSpectrogram(*ws, surface).DrawSpectrogram();
  } else if (opt.kind == "track") {
    frmViewTrack(*ws, surface).DrawTrack();
  } else if (opt.kind == "contour") {
    frmContour(*ws, surface).DrawTrack();
  } else if (opt.kind == "track-report") {
    frmTrackReport report(*ws, surface);
    report.DrawTrackReport();
  } else {
    std::unique_ptr<LinePlot> plot = distance ? std::unique_ptr<LinePlot>(std::make_unique<frmDistance>(*ws, surface))
                                              : std::make_unique<frmGraph>(*ws, surface);
    plot->DrawLineGraphs();
  }
  // The map windows name their lap in their title; the others get the traces' legend.
  if (opt.kind != "track" && opt.kind != "contour" && opt.kind != "track-report") DrawLegend(*ws, surface);
  painter.end();
  if (!image.save(QString::fromStdString(opt.out), "PNG")) {
    std::fprintf(stderr, "Unable to write %s\n", opt.out.c_str());
    return 1;
  }
  return 0;
}

}  // namespace

void AddPlotCommand(CLI::App& cli, CliContext& context) {
  auto opt = std::make_shared<PlotOptions>();
  CLI::App* sub = cli.add_subcommand("plot", "Draw a plot window of laps and channels into a PNG picture");
  sub->add_option("OUTINGS", opt->files, "Outing files, one folder")->required();
  sub->add_option("--channels", opt->channels, "Channel names, comma separated")->required();
  sub->add_option("--laps", opt->laps, "\"fast\", \"all\" (the timed laps) or lap indices, comma separated");
  sub->add_option("--kind", opt->kind, "time, distance, xy, histogram, spectrum, spectrogram, track, contour or track-report")
      ->check(CLI::IsMember({"time", "distance", "xy", "histogram", "spectrum", "spectrogram", "track", "contour", "track-report"}));
  sub->add_option("--map", opt->map, "The map of track, contour and track-report (default: the folder's)");
  sub->add_option("--x", opt->x, "The x channel of an XY plot (default System Speed)");
  sub->add_flag("--tile", opt->tile, "One band per channel");
  sub->add_option("--theme", opt->theme, "\"light\" (black on white) or \"dark\" (white on black)")
      ->check(CLI::IsMember({"light", "dark"}));
  sub->add_option("--start", opt->start, "Start of the view: seconds from the lap's start (distance units for --kind distance)");
  sub->add_option("--end", opt->end, "End of the view: seconds from the lap's start (distance units for --kind distance)");
  sub->add_option("--width", opt->width, "Picture width in pixels")->check(CLI::Range(200, 10000));
  sub->add_option("--height", opt->height, "Picture height in pixels")->check(CLI::Range(150, 10000));
  sub->add_option("--out", opt->out, "The PNG file to write")->required();
  AddHomeOption(*sub, context);
  sub->callback([&context, opt] { context.exit_code = RunPlot(context, *opt); });
}
