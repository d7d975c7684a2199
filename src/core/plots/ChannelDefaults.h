#pragma once

// A channel's display settings act for every outing: an edit goes to the channel of the same
// name in the loaded outings and to its record in CHANNEL.DSC, from which outings opened later
// take it.

#include <QString>
#include <functional>

struct ChannelDescriptor;
struct ChannelRec;
struct Workspace;

// Calls `edit` on every channel whose short name matches `name` (trimmed, upper-cased) in the
// loaded outings of folder `folder`, or of every folder when `folder` is -1.
void ForEachChannelNamed(Workspace& ws, int folder, const QString& name, const std::function<void(ChannelRec&)>& edit);

// Changes record `index` of CHANNEL.DSC and writes the file whole (the other records keep their
// bytes), then reads it again. False after the message "Write Channels" when it can't be written.
bool EditDescriptor(Workspace& ws, int index, const std::function<void(ChannelDescriptor&)>& edit);
