#pragma once

// File helpers shared by every reader and writer.

#include <QByteArray>
#include <QString>
#include <cstdint>

// True when the path names a file that can be opened for reading. Every open of a user file
// asks this first.
bool FileExists(const QString& path);

// The text after the last path separator ("\" as the family writes paths, or "/").
QString BaseName(const QString& path);

// Joins a directory and a file name with "/".
QString JoinPath(const QString& dir, const QString& name);

// Writes the whole file or nothing: the old file stays until the new one is complete.
bool WriteFileAtomically(const QString& path, const QByteArray& bytes, QString* error = nullptr);

// Reads at most `max_bytes` of a file from `offset`. Fails only when the file cannot be opened.
bool ReadFileBytes(const QString& path, qint64 offset, qint64 max_bytes, QByteArray& out,
                   QString* error = nullptr);
