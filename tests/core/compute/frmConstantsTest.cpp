#include "core/compute/frmConstants.h"

#include "../TestOutings.h"

namespace {

using namespace test_outings;

const std::vector<ConstantRec> kGlobals = {
    {QStringLiteral("Brake Bias"), QStringLiteral("57.5")},
    {QStringLiteral("Fuel Density "), QStringLiteral("0.745")},  // as CONSTANT.DEF gives it: blank kept
    {QStringLiteral("Wheelbase"), QStringLiteral("Book1!R1C1")},
};

std::vector<QString> Values(const std::vector<ConstantRec>& table) {
  std::vector<QString> v;
  for (const ConstantRec& c : table) v.push_back(c.Name.trimmed() + '=' + c.Value);
  return v;
}

// An editor over the global constants above, with no files behind them.
struct Editor {
  Editor() {
    b.ws.GlobalConstants = kGlobals;
    b.ws.GlobalConstantCount = static_cast<int>(kGlobals.size());
    f.Form_Load(b.ws);
  }
  BareWorkspace b;
  frmConstants f;
};

TEST(frmConstants, AddConstantChecksTheName) {
  const char* kExists = "Channel  \"Fuel Density\"  exists. Overwrite existing constant ?";
  struct Case {
    const char* typed;
    std::deque<bool> answers;
    const char* message;
    const char* title;
    const char* last_row;  // after the call
  } cases[] = {
      {"Tyre,Pressure", {}, "Illegal character in channel name", "Check String", "Wheelbase=Book1!R1C1"},
      {"T ", {}, "Constant names must be at least 2 characters", "Constants", "Wheelbase=Book1!R1C1"},
      {" Tyre Pressure ", {}, "", "", "Tyre Pressure=1.6"},  // the value is one line
      {"fuel density", {false}, kExists, "Constants", "Wheelbase=Book1!R1C1"},
  };
  for (const Case& k : cases) {
    Editor e;
    e.b.messages.answers = k.answers;
    EXPECT_EQ(e.f.AddConstant(e.b.ws, QString::fromLatin1(k.typed), QStringLiteral(" 1.6\r\nrest")), !*k.message)
        << k.typed;
    EXPECT_EQ(LastMessage(e.b.messages).text, k.message) << k.typed;
    EXPECT_EQ(LastMessage(e.b.messages).title, k.title) << k.typed;
    EXPECT_EQ(Values(e.f.Rows()).back(), k.last_row) << k.typed;
  }
}

TEST(frmConstants, ExportImportRoundTripAndRefusals) {
  Editor e;
  const QString path = e.b.dir.filePath(QStringLiteral("CONST.TXT"));
  ASSERT_TRUE(e.f.mnuExport(e.b.ws, {0, 2}, path));
  QByteArray bytes;
  ASSERT_TRUE(ReadFileBytes(path, 0, 1 << 20, bytes));
  EXPECT_EQ(bytes, "[Export Constants]\r\nBrake Bias = 57.5\r\nWheelbase = Book1!R1C1\r\n");

  Editor other;
  other.f.SetValue(0, QStringLiteral("60"));
  other.f.SetValue(2, QStringLiteral("2.9"));
  ASSERT_TRUE(WriteFileAtomically(path, bytes + "Tyre Pressure = 1.6\r\n= 4\r\nno sign\r\n"));
  other.b.messages.answers = {true, false};
  ASSERT_TRUE(other.f.mnuImport(other.b.ws, path));
  EXPECT_EQ(LastMessage(other.b.messages).text, "Channel  \"Wheelbase\"  exists. Overwrite existing constant ?");
  EXPECT_EQ(LastMessage(other.b.messages).title, "Import Constant");
  EXPECT_EQ(Values(other.f.Rows()),
            (std::vector<QString>{"Brake Bias=57.5", "Fuel Density=0.745", "Wheelbase=2.9", "Tyre Pressure=1.6"}));

  ASSERT_TRUE(WriteFileAtomically(path, "[Export Math Channels]\r\nBrake Bias = 1\r\n"));
  EXPECT_FALSE(e.f.mnuImport(e.b.ws, path));
  EXPECT_EQ(LastMessage(e.b.messages).text, "Invalid constant file");
  EXPECT_EQ(LastMessage(e.b.messages).title, "Import Constant");
}

// Global constants and one formula that uses one of them, with two small outings loaded: slot 0
// keeps its own fuel density, slot 1 keeps no constants.
struct LoadedHome {
  LoadedHome() {
    ws().GlobalConstants = kGlobals;
    ws().GlobalConstantCount = static_cast<int>(kGlobals.size());
    const std::vector<ConstantEntry> own = {{QStringLiteral("Fuel Density"), 0.748f}};
    LoadSpeedOutings(home, QStringLiteral("Fuel_Mass[001] = SYSTEM SPEED * Fuel Density"), {1, 0}, &own);
    f.Form_Load(ws());
  }
  Workspace& ws() { return home.ws(); }
  // The number the formula multiplies by in the outing.
  QString Factor(int slot) { return home.Outing(slot).Postfix.at(0).Tokens.at(1).Text; }
  std::vector<QString> Table(int slot) { return Values(home.Outing(slot).OutingConstants); }
  QByteArray ConstantFile() {
    QByteArray bytes;
    ReadFileBytes(JoinPath(ws().Paths.MathDirectory, kConstantFileName), 0, 1 << 20, bytes);
    return bytes;
  }
  TestHome home;
  frmConstants f;
};

TEST(frmConstantsSave, GlobalSaveReachesLoadedOutingsAndLeavingAsks) {
  LoadedHome h;
  h.f.SetValue(1, QStringLiteral("0.8"));
  h.home.messages.answers = {false};
  EXPECT_TRUE(h.f.Form_QueryUnload(h.ws()));  // no: dropped
  EXPECT_EQ(h.home.messages.entries.at(0).text, "Save Constant Changes ?");
  EXPECT_EQ(h.home.messages.entries.at(0).title, "Save Constants");
  EXPECT_TRUE(h.ConstantFile().isEmpty());

  h.f.Form_Load(h.ws());
  h.f.SetValue(1, QStringLiteral("0.8"));
  ASSERT_TRUE(h.f.AddConstant(h.ws(), QStringLiteral("Tyre Pressure"), QStringLiteral("1.6")));
  h.home.messages.answers = {true};
  EXPECT_TRUE(h.f.Form_QueryUnload(h.ws()));
  EXPECT_EQ(h.ConstantFile(),
            "[ZOL Global Constants]\r\nBrake Bias = 57.5\r\nFuel Density = 0.8\r\n"
            "Wheelbase = Book1!R1C1\r\nTyre Pressure = 1.6\r\n");
  // Each outing has the global rows; one that keeps its own value keeps it.
  EXPECT_EQ(h.Table(1),
            (std::vector<QString>{"Brake Bias=57.5", "Fuel Density=0.8", "Wheelbase=Book1!R1C1", "Tyre Pressure=1.6"}));
  EXPECT_EQ(h.Table(0)[1], "Fuel Density=0.748");
  EXPECT_EQ(h.Factor(1), "0.800000");
}

TEST(frmConstantsSave, CopyingBetweenOutingAndGlobal) {
  LoadedHome h;
  EXPECT_FALSE(h.f.mnuCopyToOuting(h.ws()));  // needs the outing's table shown
  ASSERT_TRUE(h.f.optOuting_Click(h.ws()));
  ASSERT_TRUE(h.f.mnuCopyToOuting(h.ws()));
  // A link goes in as what it gives now; one that gives nothing as 0.
  EXPECT_EQ(h.f.Row(1).Value, "0.745");
  EXPECT_EQ(h.f.Row(2).Value, "0");

  h.f.SetValue(0, QStringLiteral("59"));
  h.home.messages.answers = {false, true};
  EXPECT_FALSE(h.f.mnuCopyToGlobal(h.ws()));
  EXPECT_EQ(h.home.messages.entries.at(1).text, "Copy Outing Constants to Global ?");
  EXPECT_EQ(h.home.messages.entries.at(1).title, "Copy to Global");
  EXPECT_TRUE(h.f.mnuCopyToGlobal(h.ws()));
  EXPECT_EQ(h.ws().GlobalConstants[0].Value, "57.5");  // copied, not stored: the save stores it
  ASSERT_TRUE(h.f.SaveChanges(h.ws()));
  EXPECT_EQ(Values(h.ws().GlobalConstants),
            (std::vector<QString>{"Brake Bias=59", "Fuel Density=0.745", "Wheelbase=0"}));
  EXPECT_EQ(h.Table(1)[0], "Brake Bias=59");
}

}  // namespace
