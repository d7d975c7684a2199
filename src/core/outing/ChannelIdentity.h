#pragma once

// What a channel key says about where a channel comes from, and the standard channel names.

#include <QString>

// The physical source of a channel key: "Battery", "Lateral G", "LCU.1", "Card 2.4", "ECU.12",
// "GPS0", …; empty for built-in keys 64..127 and keys beyond the table.
QString ChannelSourceName(int key);

// The name shown for a standard channel code 0..16 ("Standard" for 0 and unknown codes).
QString StandardChannelName(int code);
