#pragma once

// Numbers, times and names as the plot windows and reports show them.

#include <QString>

struct Workspace;
struct ChannelRec;

// The value with the channel's Decimals (0 to 3, any other count 4), a blank behind a value of
// 0 or more so that signed columns line up; " - " when the value can't be written.
QString FormatChannelValue(const ChannelRec& channel, double value);
// The same with the channel's FftDecimals.
QString FormatFftValue(const ChannelRec& channel, double value);

// A value whose size picks the format: up to 9.9999 "0.000", 10 to 99.9999 "00.00", 100 to
// 999.9999 "000.0", 1000 to 99999 whole, above that as many digits as it takes. A value falling
// between two of the ranges (9.99995, say) gives no digits at all: the axis labels have always
// shown a gap there. A blank follows a value of 0 or more.
QString FormatAuto(double value);

// A number in general form: as many digits as `significant` allows, in scientific notation ("E+")
// when too large or small for them. 15 digits for a double, 7 for a 32-bit float.
QString GeneralNumber(double value, int significant = 15);

// "  m:ss.sss" with the minutes right-aligned in three places of two blanks each; the sign is
// dropped.
QString FormatTime(double ms);

// A lap time, or with the lap-speed display on and a track loaded, the lap's mean speed; cut of
// its leading blanks only, so a speed keeps the blank of its sign.
QString FormatLapTime(const Workspace& ws, double ms);
// The text without its leading blanks.
QString LeftTrimmed(QString text);

// The name of a colour (a BGR integer) from the table of 48 named colours; empty when it has none.
QString ColorName(int color);

// The caption of a trace: "NAME (units}". The brace closes it as it always has.
QString ChannelLabel(const ChannelRec& channel);
