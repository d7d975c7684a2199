// The math and constants editors driven as a person would, on the demo session: a formula typed
// with the function list, the channel list and the keys, saved, compiled into the loaded outing
// and drawn; a refused formula and a dropped edit that leave the files alone.

#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <map>

#include "core/app/Files.h"
#include "core/app/Paths.h"
#include "core/outing/ChannelData.h"
#include "core/plots/PlotScale.h"
#include "ui/GraphWindow.h"
#include "UiSession.h"

// Failures show texts as texts.
static void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace {

using ui_test::Child;
using ui_test::Session;
using ui_test::WhenModal;

// The demo home, made once; each test starts from the files the editors may rewrite as they
// were made.
class DemoHome {
 public:
  DemoHome() {
    ui_test::InstallDemo(dir_.path(), 2, true);
    for (const QString& f : Files()) ReadFileBytes(f, 0, 1 << 24, pristine_[f]);
  }
  QString Path() {
    for (const auto& [file, bytes] : pristine_) WriteFileAtomically(file, bytes);
    return dir_.path();
  }
  QStringList Files() const {
    const PathSettings paths = DefaultPaths(dir_.path());
    return {MathFile(), JoinPath(paths.MathDirectory, "CONSTANT.DEF"), JoinPath(paths.SetupDirectory, "CHANNEL.DSC")};
  }
  QString MathFile() const { return JoinPath(DefaultPaths(dir_.path()).MathDirectory, "MATHCHL.DEF"); }
  QByteArray Bytes(const QString& file) const {
    QByteArray bytes;
    ReadFileBytes(file, 0, 1 << 24, bytes);
    return bytes;
  }

 private:
  QTemporaryDir dir_;
  std::map<QString, QByteArray> pristine_;
};

DemoHome& Home() {
  static DemoHome home;
  return home;
}

void DoubleClick(QListWidget* list, const QString& text) {
  const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
  ASSERT_FALSE(found.isEmpty()) << text.toStdString();
  list->scrollToItem(found[0]);
  const QPoint at = list->visualItemRect(found[0]).center();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
  QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
}

TEST(MathDialogs, AFormulaTypedInTheEditorIsCompiledFetchedAndDrawn) {
  Session s(Home().Path());
  const int lat = FindChannelByName(*s.ws, 0, 0, "LATERAL G");
  ASSERT_GE(lat, 0);
  QString id, name, typed;
  WhenModal([&](QWidget* editor) {
    WhenModal([](QWidget* form) {
      Child<QLineEdit>(form, "txtName")->setText("Abs Lat G");
      Child<QPushButton>(form, "cmdOK")->click();
    });
    Child<QAction>(editor, "mnuDefineNew")->trigger();
    id = Child<QLabel>(editor, "lblID")->text();
    name = Child<QLabel>(editor, "lblName")->text();
    // A function at the caret, a channel from the list between its brackets, then the keys.
    auto* txt = Child<QLineEdit>(editor, "txtMath");
    DoubleClick(Child<QListWidget>(editor, "lstFunction"), "ABS");
    WhenModal([](QWidget* list) {
      DoubleClick(Child<QListWidget>(list, "lstChannel"), "LATERAL G");
    });
    Child<QPushButton>(editor, "cmdChannel")->click();
    QTest::keyClick(txt, Qt::Key_End);
    QTest::keyClicks(txt, "*9.81");
    typed = txt->text();
    Child<QAction>(editor, "mnuValidate")->trigger();
    Child<QPushButton>(editor, "cmdOK")->click();
  });
  s.action("Math Channels")->trigger();

  EXPECT_EQ(id, "ID : 005");
  EXPECT_EQ(name, "Name : Abs_Lat_G");
  EXPECT_EQ(typed, "ABS   (LATERAL G)*9.81");
  EXPECT_TRUE(s.messages.entries.empty()) << s.messages.entries[0].text.toStdString();
  ASSERT_EQ(s.ws->MathCount, 5);
  EXPECT_EQ(s.ws->MathDefs[4].Line, "Abs_Lat_G[005] = ABS (LATERAL G) * 9.81");
  EXPECT_TRUE(Home().Bytes(Home().MathFile()).endsWith("Abs_Lat_G[005] = ABS (LATERAL G) * 9.81\r\n"));

  // Compiled into the loaded outing, at the rate of its operand.
  OutingRec& o = s.folder().Outings[0];
  const int math = o.LoggedCount + 3 + 4;
  ASSERT_LT(math, static_cast<int>(o.Channels.size()));
  EXPECT_EQ(o.Channels[static_cast<std::size_t>(math)].Key, 1031);
  EXPECT_EQ(o.Channels[static_cast<std::size_t>(math)].Rate, o.Channels[static_cast<std::size_t>(lat)].Rate);
  GetChannelData(*s.ws, 0, o.CurLap, math);
  EXPECT_GT(o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels[static_cast<std::size_t>(math)].Samples.size(),
            1000u);

  // On the lap it is drawn under its name.
  s.host->channels = {math};
  s.action("Add Channel(s)")->trigger();
  GraphWindow* graph = s.window->OpenGraphWindow(false);
  ASSERT_NE(graph, nullptr);
  EXPECT_TRUE(graph->Captions()->text().contains("ABS_LAT_G")) << graph->Captions()->text().toStdString();
}

TEST(MathDialogs, ARefusedFormulaStaysAndClosingWithoutSavingKeepsTheFiles) {
  Session s(Home().Path());
  const QByteArray file = Home().Bytes(Home().MathFile());
  const QString line = s.ws->MathDefs[0].Line;
  bool stayed = false, alert = false, accepted = false;
  WhenModal([&](QWidget* editor) {
    auto* txt = Child<QLineEdit>(editor, "txtMath");
    txt->setText("THROTTLE + Q");
    Child<QPushButton>(editor, "cmdOK")->click();  // refused: the window stays, with the alert
    stayed = editor->isVisible();
    alert = Child<QWidget>(editor, "fraWarning")->isVisible();
    Child<QPushButton>(editor, "cmdAccept")->click();  // passes now, with no second warning
    accepted = !Child<QWidget>(editor, "fraWarning")->isVisible();
    Child<QAction>(editor, "mnuDelete")->trigger();
    Child<QPushButton>(editor, "cmdClose")->click();  // "Save Math Changes ?" - no
  });
  s.messages.answers = {false};
  s.action("Math Channels")->trigger();

  EXPECT_TRUE(stayed);
  EXPECT_TRUE(alert);
  EXPECT_TRUE(accepted);
  ASSERT_EQ(s.messages.entries.size(), 2u);  // the warning, then "Save Math Changes ?"
  EXPECT_EQ(s.messages.entries[1].title, "Save Math");
  EXPECT_EQ(Home().Bytes(Home().MathFile()), file);
  EXPECT_EQ(s.ws->MathCount, 4);
  EXPECT_EQ(s.ws->MathDefs[0].Line, line);
}

}  // namespace
