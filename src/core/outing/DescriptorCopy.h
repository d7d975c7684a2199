#pragma once

// Channel records of a loaded outing take their display settings from CHANNEL.DSC, and an edit
// of a channel is written back there, so it acts for all outings at once.

struct Workspace;
struct ChannelRec;

// Fills the channel records first..last-1 of the outing from their descriptors: analogue inputs
// and math channels by name (a new record is appended when none matches), every other key by
// its index. False when a keyed record is missing from the file.
bool CopyDescriptors(Workspace& ws, int slot, int first, int last);

// Writes the display fields of a channel into its descriptor record, then reads all again.
bool WriteDescriptorFromChannel(Workspace& ws, const ChannelRec& channel);
