#pragma once

// Circuit lines the demo drives on: a centreline or a racing line as x/y metres in a local plane
// whose origin lies on the start/finish line, points in the racing direction, closed implicitly.

#include <QString>
#include <vector>

struct Centreline {
  QString Name;              // the file's base name without extension, e.g. "Silverstone"
  std::vector<double> X, Y;  // metres, closed loop (last joins first), racing direction
  double Length = 0;         // closed polygon length, m
};

// Reads a track CSV (lines starting with '#' and blank lines skipped; first two columns used).
// False with a message in *error on a missing file, fewer than 10 points, a malformed number or a
// line of zero length.
bool ReadCentreline(const QString& path, Centreline& out, QString* error = nullptr);

// The line a car drives on circuit `name` in `tracks_dir`: racelines/<name>.csv when that file
// exists, otherwise the centreline <name>.csv.
bool ReadDrivenLine(const QString& tracks_dir, const QString& name, Centreline& out, QString* error = nullptr);
