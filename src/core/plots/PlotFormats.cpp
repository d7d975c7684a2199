#include "core/plots/PlotFormats.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "core/app/Workspace.h"
#include "core/workspace/OutingModel.h"

namespace {

QString WithSignBlank(QString text, double value) { return value >= 0 ? text + QLatin1Char(' ') : text; }

// Fixed decimals of the exact binary value, a tie going to the even digit (0.125 gives "0.12"):
// the C library rounds so under the default rounding mode, where Qt's own number text rounds a
// tie away from zero.
QString Fixed(double value, int decimals) {
  char buf[352];  // the longest double in fixed notation, with a few decimals
  std::snprintf(buf, sizeof buf, "%.*f", decimals, value);
  return QString::fromLatin1(buf);
}

QString FixedDecimals(int decimals, double value) {
  if (!std::isfinite(value)) return QStringLiteral(" - ");
  const int places = decimals >= 0 && decimals <= 3 ? decimals : 4;
  return WithSignBlank(Fixed(value, places), value);
}

// The minimum digits of a pattern such as "00.00": zero-padded on the left up to `whole` digits.
QString Padded(double value, int whole, int decimals) {
  QString text = Fixed(std::fabs(value), decimals);
  const qsizetype point = decimals > 0 ? text.indexOf('.') : text.size();
  if (point < whole) text.prepend(QString(whole - point, QLatin1Char('0')));
  return value < 0 ? QLatin1Char('-') + text : text;
}

}  // namespace

QString FormatChannelValue(const ChannelRec& channel, double value) { return FixedDecimals(channel.Decimals, value); }

QString FormatFftValue(const ChannelRec& channel, double value) { return FixedDecimals(channel.FftDecimals, value); }

QString FormatAuto(double value) {
  if (!std::isfinite(value)) return QStringLiteral(" - ");
  const double a = std::fabs(value);
  QString text;
  if (a <= 9.9999) {
    text = Padded(value, 1, 3);
  } else if (a >= 10 && a <= 99.9999) {
    text = Padded(value, 2, 2);
  } else if (a >= 100 && a <= 999.9999) {
    text = Padded(value, 3, 1);
  } else if (a >= 1000 && a <= 99999) {
    text = Fixed(value, 0);
  } else if (a > 99999) {
    text = GeneralNumber(value);
  }  // else: between two ranges, no digits
  return WithSignBlank(text, value);
}

QString GeneralNumber(double value, int significant) { return QString::number(value, 'g', significant).toUpper(); }

QString FormatTime(double ms) {
  if (!std::isfinite(ms) || std::fabs(ms) > 9.0e15) return QStringLiteral(" --- ");
  const double magnitude = std::fabs(ms);
  const auto minutes = static_cast<int64_t>(std::floor(magnitude / 60000));
  // The remainder is taken of the time rounded to whole milliseconds, as an integer remainder.
  const int64_t rest = std::llabs(static_cast<int64_t>(std::nearbyint(ms)) % 60000);
  const QString m = QString::number(minutes);
  const qsizetype blanks = std::max<qsizetype>(0, (3 - m.size()) * 2);
  const QString seconds = rest == 0 ? QStringLiteral("00.000") : Padded(static_cast<double>(rest) / 1000.0, 2, 3);
  return QString(blanks, QLatin1Char(' ')) + m + QLatin1Char(':') + seconds;
}

QString FormatLapTime(const Workspace& ws, double ms) {
  if (ws.Plots.LapSpeedDisplay && ws.TrackLength > 0) {
    return ms < 1 ? QString() : LeftTrimmed(FormatAuto(ws.TrackLength * 3.6e6 / ms));
  }
  return LeftTrimmed(FormatTime(ms));
}

QString LeftTrimmed(QString text) {
  qsizetype n = 0;
  while (n < text.size() && text.at(n) == QLatin1Char(' ')) ++n;
  return text.mid(n);
}

QString ColorName(int color) {
  static const std::pair<const char*, int> kNames[] = {
      {"salmon", 8421631}, {"light yellow", 8454143}, {"pale green", 8454016}, {"light green", 8453888},
      {"pale turquoise", 16777088}, {"dodger blue", 16744448}, {"pale violet", 12615935}, {"hot pink", 16744703},
      {"red", 255}, {"yellow", 65535}, {"lawn green", 65408}, {"lime green", 4259584}, {"cyan", 16776960},
      {"cadet blue", 12615680}, {"medium purple", 12615808}, {"magenta", 16711935}, {"saddle brown", 4210816},
      {"coral", 4227327}, {"dark lime", 65280}, {"dark cyan", 8421376}, {"dark slate blue", 8404992},
      {"slate blue", 16744576}, {"fire brick", 4194432}, {"deep pink", 8388863}, {"dark red", 128},
      {"dark orange", 33023}, {"green", 32768}, {"sea green", 4227072}, {"blue", 16711680},
      {"medium blue", 10485760}, {"dark violet", 8388736}, {"blue violet", 16711808}, {"dark brown", 64},
      {"brown", 16512}, {"dark green", 16384}, {"dark slate", 4210688}, {"midnight blue", 8388608},
      {"dark blue", 4194304}, {"dark magenta", 4194368}, {"dark purple", 8388672}, {"black", 0},
      {"olive drab", 32896}, {"olive green", 4227200}, {"dark gray", 8421504}, {"teal", 8421440},
      {"slate gray", 12632256}, {"indigo", 8519755}, {"white", 16777215},
  };
  for (const auto& [name, value] : kNames) {
    if (value == color) return QString::fromLatin1(name);
  }
  return QString();
}

QString ChannelLabel(const ChannelRec& channel) {
  return channel.Name.trimmed() + QStringLiteral(" (") + channel.Units.trimmed() + QLatin1Char('}');
}
