// `orlan track create OUTING --lap N --mode latg|gyro|gps --name NAME [settings for one run]`
// and `orlan track info MAP [--json]`.

#include <QFileInfo>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/CliWorkspace.h"
#include "cli/Commands.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/TrackCreate.h"
#include "core/track/TrackFile.h"

using nlohmann::ordered_json;

namespace {

struct CreateOptions {
  std::string outing, mode = "latg", name, comment;
  int lap = -1;
  // Each key of section "Track" for this run only; unset keeps the stored value.
  std::optional<bool> closed, invert, figure_of_eight, invert_calibration;
  std::optional<double> lat_g_offset, lat_g_increment, lat_g_start_limit, lat_g_end_limit, global_angle;
};

void AddSwitch(CLI::App* sub, const std::string& name, std::optional<bool>& v, const std::string& help) {
  sub->add_flag_callback("--" + name, [&v] { v = true; }, help);
  sub->add_flag_callback("--no-" + name, [&v] { v = false; }, "");
}

TrackSettings Overridden(TrackSettings s, const CreateOptions& o) {
  auto take = [](auto& to, const auto& from) { if (from) to = *from; };
  TrackSettings typed = s;
  take(typed.Closed, o.closed);
  take(typed.Invert, o.invert);
  take(typed.FigureOfEight, o.figure_of_eight);
  take(typed.InvertCalibration, o.invert_calibration);
  take(typed.LatGOffset, o.lat_g_offset);
  take(typed.LatGIncrement, o.lat_g_increment);
  take(typed.LatGStartLimit, o.lat_g_start_limit);
  take(typed.LatGEndLimit, o.lat_g_end_limit);
  take(typed.GlobalAngle, o.global_angle);
  typed.CreateMode = o.mode == "gyro" ? 1 : o.mode == "gps" ? 2 : 0;
  SaveTrackData(s, typed);
  return s;
}

void AddCreate(CLI::App* track, CliContext& context) {
  auto opt = std::make_shared<CreateOptions>();
  auto* sub = track->add_subcommand("create", "Make a map from one lap and write NAME.MAP into the track directory");
  AddHomeOption(*sub, context);
  sub->add_option("OUTING", opt->outing, "Outing file")->required();
  sub->add_option("--lap", opt->lap, "Lap index (0 is the out lap)")->required();
  sub->add_option("--mode", opt->mode, "latg, gyro or gps")->check(CLI::IsMember({"latg", "gyro", "gps"}));
  sub->add_option("--name", opt->name, "Map name")->required();
  sub->add_option("--comment", opt->comment, "Map comment");
  AddSwitch(sub, "closed", opt->closed, "Run the closing passes (--no-closed: leave the lap open)");
  AddSwitch(sub, "invert", opt->invert, "Side of the turn (--no-invert)");
  AddSwitch(sub, "figure-of-eight", opt->figure_of_eight, "The circuit crosses itself (--no-figure-of-eight)");
  AddSwitch(sub, "invert-calibration", opt->invert_calibration, "Negate the sensor (--no-invert-calibration)");
  sub->add_option_function<double>("--lat-g-offset", [opt](double v) { opt->lat_g_offset = v; }, "Added to the sensor");
  sub->add_option_function<double>("--lat-g-increment", [opt](double v) { opt->lat_g_increment = v; }, "Below this: straight");
  sub->add_option_function<double>("--lat-g-start-limit", [opt](double v) { opt->lat_g_start_limit = v; }, "Corner flag on above");
  sub->add_option_function<double>("--lat-g-end-limit", [opt](double v) { opt->lat_g_end_limit = v; }, "Corner flag off below");
  sub->add_option_function<double>("--global-angle", [opt](double v) { opt->global_angle = v; }, "Starting heading, degrees");
  sub->callback([opt, &context] {
    StderrMessages messages;
    auto ws = StartCliWorkspace(context, messages);
    if (!ws || !LoadCliOuting(*ws, QString::fromStdString(opt->outing))) {
      context.exit_code = 1;
      return;
    }
    const int laps = OutingAt(*ws, 0).LastLap;
    if (laps >= 2 && (opt->lap < 0 || opt->lap >= laps)) {
      std::fprintf(stderr, "No lap %d: the outing has laps 0 to %d\n", opt->lap, laps - 1);
      context.exit_code = 1;
      return;
    }
    const TrackSettings s = Overridden(ReadTrackSettings(*ws), *opt);
    if (!CreateTrack(*ws, 0, opt->lap, s) ||
        !SaveNewTrack(*ws, 0, QString::fromStdString(opt->name), QString::fromStdString(opt->comment))) {
      context.exit_code = 1;
      return;
    }
    std::printf("%s: %d points, length %.0f\n", ws->FolderTable[0].TrackFile.toStdString().c_str(),
                ws->Track.PointCount, static_cast<double>(ws->TrackLength));
  });
}

ordered_json Describe(const Workspace& ws, const QString& path) {
  const TrackState& t = ws.Track;
  ordered_json j;
  j["File"] = path.toStdString();
  j["Name"] = t.TrackName.toStdString();
  j["Comment"] = t.TrackComment.toStdString();
  j["CreateMode"] = t.CreateMode;
  j["Length"] = ws.TrackLength;
  j["OfficialLength"] = t.OfficialLength;
  j["Points"] = t.PointCount;
  j["Bounds"] = {t.TrackMinX, t.TrackMinY, t.TrackMaxX, t.TrackMaxY};
  j["FirstSegmentKind"] = t.FirstSegmentKind;
  j["Segments"] = t.SegmentStart;
  j["Splits"] = t.SplitPoints;
  return j;
}

void AddInfo(CLI::App* track, CliContext& context) {
  auto path = std::make_shared<std::string>();
  auto json = std::make_shared<bool>(false);
  auto* sub = track->add_subcommand("info", "Print a map's name, length, bounds, segments and splits");
  AddHomeOption(*sub, context);
  sub->add_option("MAP", *path, "Track map file")->required();
  sub->add_flag("--json", *json, "Machine-readable output");
  sub->callback([path, json, &context] {
    StderrMessages messages;
    auto ws = StartCliWorkspace(context, messages);
    const QString file = QString::fromStdString(*path);
    if (!ws || !LoadTrackFile(*ws, file)) {
      context.exit_code = 1;
      return;
    }
    const ordered_json j = Describe(*ws, file);
    if (*json) {
      std::printf("%s\n", j.dump(2).c_str());
      return;
    }
    const char* modes[] = {"lateral G", "gyro", "GPS"};
    const int mode = ws->Track.CreateMode;
    std::printf("Name: %s\nComment: %s\nMade from: %s\nLength: %.0f\nOfficial length: %g\nPoints: %d\n",
                ws->Track.TrackName.toStdString().c_str(), ws->Track.TrackComment.toStdString().c_str(),
                mode >= 0 && mode <= 2 ? modes[mode] : "?", static_cast<double>(ws->TrackLength),
                static_cast<double>(ws->Track.OfficialLength), ws->Track.PointCount);
    std::printf("Bounds: x %g .. %g, y %g .. %g\n", static_cast<double>(ws->Track.TrackMinX),
                static_cast<double>(ws->Track.TrackMaxX), static_cast<double>(ws->Track.TrackMinY),
                static_cast<double>(ws->Track.TrackMaxY));
    std::printf("Segments (first is a %s): %s\n", ws->Track.FirstSegmentKind ? "corner" : "straight",
                j["Segments"].dump().c_str());
    std::printf("Splits: %s\n", j["Splits"].dump().c_str());
  });
}

}  // namespace

void AddTrackCommand(CLI::App& cli, CliContext& context) {
  auto* track = cli.add_subcommand("track", "Track maps: create one from a lap, describe one");
  track->require_subcommand(1);
  AddCreate(track, context);
  AddInfo(track, context);
}
