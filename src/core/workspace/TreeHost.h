#pragma once

// What the tree commands need from the window that hosts them: the dialogs that ask, the folder
// tabs and the open windows of a folder. Messages and yes/no questions go through ws.messages;
// redraws through RefreshPlots. Every method returns "cancelled" as an empty result.

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

class frmLapSelect;
class frmDatumFile;
class frmLapHide;
class frmGroupLaps;

class TreeHost {
 public:
  static constexpr char kOutingFilter[] = "*.DAT;*.CNV";

  virtual ~TreeHost() = default;

  // A line of text (an input box); nullopt when cancelled.
  virtual std::optional<QString> AskText(const QString& prompt, const QString& title, const QString& def) = 0;
  // Outing files from a file dialog with this title and kOutingFilter; one file only unless
  // `multiple`. Empty when cancelled.
  virtual QStringList ChooseOutingFiles(const QString& title, bool multiple) = 0;
  // Laps picked from the form's rows (frmLapSelect::Row::Lap values) under this title; the form's
  // cmdColor is there for the dialog's colour button. Empty when cancelled.
  virtual std::vector<int> ChooseLaps(const QString& title, frmLapSelect& form, bool multiple) = 0;
  // Channel indexes of outing `outing` of the folder in view. Empty when cancelled.
  virtual std::vector<int> ChooseChannels(const QString& title, int outing, bool multiple) = 0;
  // A palette index 0..19 from the colour picker; -1 when cancelled.
  virtual int PickColor() = 0;
  // The outing slot picked from the form's rows; -1 when cancelled.
  virtual int ChooseDatumOuting(const frmDatumFile& form) = 0;
  // Lets the person mark the rows of the form; true for OK.
  virtual bool ChooseHiddenLaps(frmLapHide& form) = 0;
  // Lets the person fill txtLaps and chkEntireOuting; true for OK.
  virtual bool ChooseGroupLaps(frmGroupLaps& form) = 0;

  // Folder tabs, by folder index (0..15).
  virtual int FolderTabCount() = 0;
  virtual void AddFolderTab(int folder, const QString& caption) = 0;
  virtual void SetFolderTabCaption(int folder, const QString& caption) = 0;
  virtual void RemoveFolderTab(int folder) = 0;
  // Closes the open plot windows of the folder in view.
  virtual void CloseOpenWindows() = 0;
};
