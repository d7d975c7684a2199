// `orlan splits OUTING --map MAP [--json]`: the split times of every lap at the map's splits.

#include <cstdio>
#include <nlohmann/json.hpp>

#include "cli/CliWorkspace.h"
#include "cli/Commands.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"
#include "core/track/Splits.h"
#include "core/track/TrackFile.h"

void AddSplitsCommand(CLI::App& cli, CliContext& context) {
  struct Options {
    std::string outing, map;
    bool json = false;
  };
  auto opt = std::make_shared<Options>();
  auto* sub = cli.add_subcommand("splits", "Print the split times of every lap at a map's splits");
  AddHomeOption(*sub, context);
  sub->add_option("OUTING", opt->outing, "Outing file")->required();
  sub->add_option("--map", opt->map, "Track map file")->required();
  sub->add_flag("--json", opt->json, "Machine-readable output");
  sub->callback([opt, &context] {
    StderrMessages messages;
    auto ws = StartCliWorkspace(context, messages);
    if (!ws || !LoadCliOuting(*ws, QString::fromStdString(opt->outing)) ||
        !SelectTrackFile(*ws, QString::fromStdString(opt->map))) {
      context.exit_code = 1;
      return;
    }
    const OutingRec& o = OutingAt(*ws, 0);
    nlohmann::ordered_json laps = nlohmann::ordered_json::array();
    for (int lap = 0; lap < o.LastLap; ++lap) {
      const auto splits = CalcSoftSplits(*ws, 0, lap);
      nlohmann::ordered_json row;
      row["Lap"] = LapNumberText(o, lap).toStdString();
      row["Label"] = LapLabel(o, lap).toStdString();
      row["LapTime"] = LapTimeText(LapTimeMs(o, lap)).toStdString();
      for (const SoftSplit& s : splits) row["Splits"].push_back({{"Distance", s.Distance}, {"Seconds", s.Seconds}});
      laps.push_back(row);
      if (opt->json) continue;
      std::printf("%s %-4s %s", row["Lap"].get<std::string>().c_str(), row["Label"].get<std::string>().c_str(),
                  row["LapTime"].get<std::string>().c_str());
      float before = 0;
      for (const SoftSplit& s : splits) {
        std::printf("  %.0f: %.3f (+%.3f)", static_cast<double>(s.Distance), static_cast<double>(s.Seconds),
                    static_cast<double>(s.Seconds - before));
        before = s.Seconds;
      }
      std::printf("\n");
    }
    if (opt->json) std::printf("%s\n", laps.dump(2).c_str());
  });
}
