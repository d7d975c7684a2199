#pragma once

// A lap read along the map: for each point of the map in memory, the time into the lap at which
// the car passed the point's distance, and a channel's value there. The contour and the graphic
// report colour the map with these.

#include <QString>
#include <vector>

struct Workspace;

// The lap the map windows show: the selected outing's current lap. False when there is none.
bool MapLap(Workspace& ws, int& slot, int& lap);

// Per map point, the ms from the lap's start at which its distance is first passed; NaN for a
// point the lap never reaches. Empty without a distance channel.
std::vector<float> TimesAlongMap(Workspace& ws, int slot, int lap);

// Per map point, `channel`'s sample nearest that time (engineering units, filtered as plotted);
// NaN where there is no time or no sample.
std::vector<float> ValuesAlongMap(Workspace& ws, int slot, int lap, int channel, const std::vector<float>& times);

struct OutingRec;
// False without a distance channel, after "No distance data" under `title`, said once until
// the outing has distance again (`warned` keeps that).
bool HasDistance(Workspace& ws, const OutingRec& outing, const QString& title, bool& warned);
