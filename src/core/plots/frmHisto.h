#pragma once

// The histograms: for each displayed channel, the share of the time view that its value spends
// in each of a fixed number of bands of its fixed scale (never the automatic one, so laps stay
// comparable); or, with "HistoTotal", one histogram of the active channel over every lap.

#include <QString>
#include <functional>
#include <vector>

#include "core/plots/Surface.h"

struct Workspace;
struct FolderRec;

class frmHisto {
 public:
  frmHisto(Workspace& ws, Surface& surface) : ws_(ws), s_(&surface) {}
  void SetSurface(Surface& surface) { s_ = &surface; }

  // The full redraw: the bins of every trace, the bars, the axes.
  void DrawHistograms();
  // The bins of a trace over the time view: its Bins and BinSamples, and the folder's HistoPeak.
  void CalcHistogram(int slot, int lap, int channel);
  // Outline bars of one trace in its colour, in its band when the folder is tiled.
  void DrawOneHisto(int slot, int lap, int channel);
  // One set of bars: each bin summed over every displayed lap of the active channel.
  void DrawHistoTotal();
  // The bins' edges with their values, and the active channel's share of each bin.
  void DrawBottomAxis();
  // The share at the top of the axis in percent, or in seconds with "HistoTimeScale".
  void DrawLeftAxis();
  void DrawTimeAxis();
  void LoadDataLabels();

  // A click in the data area: the bin under it, its range, share and time, in the labels, and
  // the numeric cursor moved onto it; the view stays.
  void MouseDown(int button, double x, double y);
  // The numeric cursor: the bin whose values the labels show, marked by an exclusive-or line
  // down its middle; -1: none.
  int CursorBin = -1;
  void DrawCursorBin();

  // Twips of height per sample counted, by the scale in force, for a histogram of `total`
  // samples in a band `usable` high.
  double TwipsPerCount(double usable, double total) const;
  // The bar width: the data area with a fixed right margin of 300, over the bins.
  double BarWidth() const;

  struct DataLabel {
    QString Caption;
    QString Value;
  };
  std::vector<DataLabel> Labels;  // "Bin :", "Share :", "Time :"
  QString Caption;                // the active channel's name and " - Histogram"

 private:
  FolderRec& Folder() const;
  int Bins() const;
  // The floor and the height of a trace's bars: the data area, or its band in a tiled folder.
  void Band(int slot, int lap, int channel, double& floor, double& usable) const;
  // The active channel's bins and their total: one trace's, or the sum over every lap.
  bool ActiveBins(std::vector<int32_t>& counts, double& total, int& slot, int& lap, int& channel) const;
  void DrawBars(const std::vector<int32_t>& counts, double total, double floor, double usable, int color);
  // 50 ticks up the left axis, labelled every fifth with `label` of the tick.
  void DrawTicks50(const std::function<QString(int tick)>& label);

  Workspace& ws_;
  Surface* s_;
};

// frmHistoScale ("Histogram Scales"): the automatic scale, or the share at the top of the axis.
class frmHistoScale {
 public:
  void Form_Load(const Workspace& ws);
  // Stores both and redraws; false, storing nothing, when the value is not a number.
  bool cmdOK(Workspace& ws);
  bool chkAuto = false;  // "AutoScale"
  QString txtDataIn;     // "Enter &Value :", percent
};
