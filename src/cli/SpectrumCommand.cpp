// `orlan spectrum FILE --lap N --channel CH --start MS --end MS [--json]`: the spectrum of a
// channel over a span of a lap, the numbers the spectrum window plots. The span is in ms from
// the lap's start, rounded to whole ms with halves to even, as the folder keeps it for the window.

#include <charconv>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/CliWorkspace.h"
#include "cli/Commands.h"
#include "core/app/Numbers.h"
#include "core/compute/Frequency.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotScale.h"

namespace {

struct SpectrumOptions {
  std::string file, channel;
  int lap = 1;
  double start = 0, end = 0;
  bool json = false;
};

// The shortest text that reads back as the same float; null (as JSON has no infinities) for a
// magnitude of samples that held one.
std::string FloatText(float v) {
  if (!std::isfinite(v)) return "null";
  char buf[32];
  const auto r = std::to_chars(buf, buf + sizeof buf, v);
  return std::string(buf, r.ptr);
}

int RunSpectrum(CliContext& context, const SpectrumOptions& opt) {
  StderrMessages messages;
  auto ws = StartCliWorkspace(context, messages);
  if (!ws || !LoadCliOuting(*ws, QString::fromStdString(opt.file))) return 1;
  OutingRec& o = OutingAt(*ws, 0);
  const int c = FindChannelByName(*ws, 0, 0, QString::fromStdString(opt.channel));
  if (c < 0) {
    std::fprintf(stderr, "no channel %s\n", opt.channel.c_str());
    return 1;
  }
  if (opt.lap < 0 || opt.lap >= o.LastLap) {
    std::fprintf(stderr, "lap %d is not one of 0..%d\n", opt.lap, o.LastLap - 1);
    return 1;
  }
  const ChannelRec& ch = o.Channels[static_cast<std::size_t>(c)];
  const std::string name = ch.Name.trimmed().toStdString();
  if (!(ch.Rate > 0)) {
    std::fprintf(stderr, "%s has no sample rate: it has no spectrum\n", name.c_str());
    return 1;
  }
  const int32_t start_ms = SaturateInt32(RoundHalfEven(opt.start)), end_ms = SaturateInt32(RoundHalfEven(opt.end));
  GetChannelData(*ws, 0, opt.lap, c);
  const std::vector<float>& samples =
      o.Laps[static_cast<std::size_t>(opt.lap)].LapChannels[static_cast<std::size_t>(c)].Samples;
  const FftSpan span = SpanSamples(static_cast<int64_t>(samples.size()) - 1, ch.Rate, start_ms, end_ms);
  if (span.N == 0) {
    std::fprintf(stderr, "%d to %d ms holds no samples of %s in lap %d\n", start_ms, end_ms, name.c_str(), opt.lap);
    return 1;
  }
  const std::vector<float> spectrum = Spectrum(samples, span.Start, span.N);
  const double bin_hz = ch.Rate * 1000.0 / span.N;  // as the window's frequency axis has it

  if (!opt.json) {
    std::printf("%s, lap %d, %d to %d ms: %d points from sample %lld at %g Hz, bins of %g Hz\n", name.c_str(), opt.lap,
                start_ms, end_ms, span.N, static_cast<long long>(span.Start), ch.Rate * 1000.0, bin_hz);
    std::printf("%6s %12s  %s\n", "bin", "Hz", "magnitude");
    for (std::size_t i = 0; i < spectrum.size(); ++i) {
      std::printf("%6zu %12.4f  %s\n", i, static_cast<double>(i) * bin_hz, FloatText(spectrum[i]).c_str());
    }
    return 0;
  }
  nlohmann::ordered_json j;
  j["Channel"] = name;
  j["Lap"] = opt.lap;
  j["Start"] = start_ms;
  j["End"] = end_ms;
  j["FirstSample"] = span.Start;
  j["Rate"] = ch.Rate;
  j["RateHz"] = ch.Rate * 1000.0;
  j["N"] = span.N;
  j["BinHz"] = bin_hz;
  // The magnitudes are written here, not by the library: its float text is not always the
  // shortest, and a script comparing bit for bit needs each float back as it was.
  std::string text = j.dump(2);
  text.resize(text.size() - 2);  // "\n}"
  text += ",\n  \"Spectrum\": [";
  for (std::size_t i = 0; i < spectrum.size(); ++i) text += (i ? ", " : "") + FloatText(spectrum[i]);
  text += "]\n}\n";
  std::fputs(text.c_str(), stdout);
  return 0;
}

}  // namespace

void AddSpectrumCommand(CLI::App& cli, CliContext& context) {
  auto opt = std::make_shared<SpectrumOptions>();
  CLI::App* sub = cli.add_subcommand("spectrum", "The spectrum of a channel over a span of a lap, as the spectrum window computes it");
  sub->footer(
      "Magnitudes of bins 0..N/2-1, bin i at i x BinHz hertz. With --json: Rate in samples per ms as the outing "
      "stores it; RateHz and BinHz in hertz; N the points transformed (a power of two, at most 16384); Start and End "
      "the span in whole ms; FirstSample its first sample; Spectrum the magnitudes, each the shortest text that reads "
      "back as the same 32-bit float (null where the samples held an infinity).");
  sub->add_option("FILE", opt->file, "Outing file")->required();
  sub->add_option("--lap", opt->lap, "Lap index (0 is the out lap)")->required();
  sub->add_option("--channel", opt->channel, "The channel")->required();
  sub->add_option("--start", opt->start, "Start of the span, ms from the lap's start")->required();
  sub->add_option("--end", opt->end, "End of the span, ms from the lap's start")->required();
  sub->add_flag("--json", opt->json, "Print one JSON object, for scripts");
  AddHomeOption(*sub, context);
  sub->callback([&context, opt] { context.exit_code = RunSpectrum(context, *opt); });
}
