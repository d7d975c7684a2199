// `orlan export FILE --lap N [--channels A,B] [--format csv|json] [--out PATH]`: a lap's
// samples exactly as the fetch leaves them (calibrated, filtered, from the lap's start, with the
// margin past its end).

#include <QFile>
#include <QSaveFile>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>

#include "cli/CliWorkspace.h"
#include "cli/Commands.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"

namespace {

// The shortest text that reads back to the same float (at most 9 significant digits).
std::string FloatText(float v) {
  char buf[32];
  const auto r = std::to_chars(buf, buf + sizeof buf, v);
  return std::string(buf, r.ptr);
}

// A raw float word may be no number or infinite: an empty field in CSV and null in JSON, which
// spreadsheets and pandas read as missing.
std::string CsvSample(float v) { return std::isfinite(v) ? FloatText(v) : std::string(); }
std::string JsonSample(float v) { return std::isfinite(v) ? FloatText(v) : std::string("null"); }

struct ExportOptions {
  std::string file;
  std::string lap = "fast";
  std::string channels;
  std::string format = "csv";
  std::string out;
};

// Channel indices by name (or index), every channel of the outing when none are named.
bool PickChannels(const OutingRec& o, const std::string& list, std::vector<int>& picked, std::string& error) {
  if (list.empty()) {
    for (int i = 0; i < o.LastChannel; ++i) picked.push_back(i);
    return true;
  }
  for (const QString& want : QString::fromStdString(list).split(',', Qt::SkipEmptyParts)) {
    const QString name = want.trimmed().toUpper();
    int found = -1;
    for (int i = 0; i < o.LastChannel && found < 0; ++i) {
      if (o.Channels[static_cast<std::size_t>(i)].Name.trimmed() == name) found = i;
    }
    bool is_number = false;
    const int index = name.toInt(&is_number);
    if (found < 0 && is_number && index >= 0 && index < o.LastChannel) found = index;
    if (found < 0) {
      error = "no channel named " + want.trimmed().toStdString();
      return false;
    }
    picked.push_back(found);
  }
  return true;
}

std::string Csv(const OutingRec& o, int lap, const std::vector<int>& picked) {
  // One block of columns per rate: its time, then its channels.
  std::map<float, std::vector<int>, std::greater<>> by_rate;
  for (int c : picked) by_rate[o.Channels[static_cast<std::size_t>(c)].Rate].push_back(c);
  std::string text;
  std::size_t rows = 0;
  for (const auto& [rate, channels] : by_rate) {
    text += (text.empty() ? "" : ",") + std::string("Time@") + FloatText(rate * 1000) + "Hz (s)";
    for (int c : channels) {
      const ChannelRec& ch = o.Channels[static_cast<std::size_t>(c)];
      text += ",\"" + ch.Name.trimmed().toStdString() + " (" + ch.Units.trimmed().toStdString() + ")\"";
      rows = std::max(rows, o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].Samples.size());
    }
  }
  text += "\n";
  for (std::size_t r = 0; r < rows; ++r) {
    bool first = true;
    for (const auto& [rate, channels] : by_rate) {
      std::size_t longest = 0;
      for (int c : channels) longest = std::max(longest, o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].Samples.size());
      text += first ? "" : ",";
      first = false;
      const double hz = std::round(rate * 1e6) / 1e3;  // the nominal rate, not its float approximation
      if (r < longest && hz > 0) text += FloatText(static_cast<float>(r / hz));
      for (int c : channels) {
        const auto& s = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].Samples;
        text += ",";
        if (r < s.size()) text += CsvSample(s[r]);
      }
    }
    text += "\n";
  }
  return text;
}

std::string Json(const OutingRec& o, int lap, const std::vector<int>& picked) {
  using nlohmann::json;
  std::string text = "{\n  \"File\": " + json(o.FileName.toStdString()).dump() + ",\n  \"Lap\": " + std::to_string(lap) +
                     ",\n  \"StartTime\": " + std::to_string(o.Laps[static_cast<std::size_t>(lap)].StartTime) +
                     ",\n  \"Channels\": [";
  for (std::size_t k = 0; k < picked.size(); ++k) {
    const ChannelRec& c = o.Channels[static_cast<std::size_t>(picked[k])];
    text += std::string(k ? "," : "") + "\n    {\"Index\": " + std::to_string(picked[k]) + ", \"Key\": " + std::to_string(c.Key) +
            ", \"Name\": " + json(c.Name.trimmed().toStdString()).dump() + ", \"Rate\": " + FloatText(c.Rate) + ", \"Samples\": [";
    const auto& s = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(picked[k])].Samples;
    for (std::size_t i = 0; i < s.size(); ++i) text += (i ? "," : "") + JsonSample(s[i]);
    text += "]}";
  }
  return text + "\n  ]\n}\n";
}

}  // namespace

void AddExportCommand(CLI::App& cli, CliContext& context) {
  auto* sub = cli.add_subcommand("export", "Write a lap's samples, calibrated and filtered, as CSV or JSON");
  auto opt = std::make_shared<ExportOptions>();
  sub->add_option("FILE", opt->file, "Outing file")->required();
  sub->add_option("--lap", opt->lap, "Lap index (0 is the out lap), or \"fast\"")->required();
  sub->add_option("--channels", opt->channels, "Channel names or indices, comma separated (default: all)");
  sub->add_option("--format", opt->format, "csv or json")->check(CLI::IsMember({"csv", "json"}));
  sub->add_option("--out", opt->out, "Output file (default: standard output)");
  AddHomeOption(*sub, context);
  sub->callback([opt, &context] {
    StderrMessages messages;
    auto ws = StartCliWorkspace(context, messages);
    const QString path = QString::fromStdString(opt->file);
    if (!ws || !LoadCliOuting(*ws, path)) {
      context.exit_code = 1;
      return;
    }
    const OutingRec& o = OutingAt(*ws, 0);
    bool numeric = false;
    const int lap = opt->lap == "fast" ? o.FastLap : QString::fromStdString(opt->lap).toInt(&numeric);
    if ((opt->lap != "fast" && !numeric) || lap < 0 || lap >= o.LastLap) {
      std::fprintf(stderr, "export: lap %s is not one of 0..%d\n", opt->lap.c_str(), o.LastLap - 1);
      context.exit_code = 1;
      return;
    }
    std::vector<int> picked;
    std::string error;
    if (!PickChannels(o, opt->channels, picked, error)) {
      std::fprintf(stderr, "export: %s\n", error.c_str());
      context.exit_code = 1;
      return;
    }
    {
      FetchScope scope(*ws);
      for (int c : picked) GetChannelData(*ws, 0, lap, c);
    }
    const std::string text = opt->format == "json" ? Json(o, lap, picked) : Csv(o, lap, picked);
    if (opt->out.empty()) {
      std::fwrite(text.data(), 1, text.size(), stdout);
      return;
    }
    QSaveFile f(QString::fromStdString(opt->out));
    if (!f.open(QIODevice::WriteOnly) || f.write(text.data(), static_cast<qint64>(text.size())) != static_cast<qint64>(text.size()) ||
        !f.commit()) {
      std::fprintf(stderr, "export: unable to write %s\n", opt->out.c_str());
      context.exit_code = 1;
    }
  });
}
