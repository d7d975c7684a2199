#include "core/compute/MathCompiler.h"

#include <array>

#include "core/app/Workspace.h"
#include "core/compute/OutingConstants.h"
#include "core/outing/HeaderProcessing.h"

namespace {

QString RightTrimmed(const QString& s) {
  qsizetype n = s.size();
  while (n > 0 && s.at(n - 1).isSpace()) --n;
  return s.left(n);
}

bool IsNameCharacter(QChar c) {
  c = c.toUpper();
  return (c >= 'A' && c <= 'Z') || c == '_';
}

bool IsDigit(QChar c) { return c >= '0' && c <= '9'; }

QString Reference(QChar mark, int index) { return mark + QStringLiteral("%1").arg(index, 3, 10, QLatin1Char('0')); }

// Replaces each whole occurrence of `name` in `text`, searching on behind each replacement.
// `stop_before` (when not empty) ends the search as soon as it occurs at or after the position
// the search stands at.
void ReplaceWholeNames(QString& text, const QString& name, const QString& replacement, const QString& stop_before) {
  if (name.isEmpty()) return;  // an empty name would be found everywhere
  qsizetype from = 0;
  while (from <= text.size()) {
    if (!stop_before.isEmpty() && text.indexOf(stop_before, from, Qt::CaseInsensitive) >= 0) return;
    const qsizetype hit = text.indexOf(name, from, Qt::CaseSensitive);
    if (hit < 0) return;
    if (IsWholeName(text, hit, name)) {
      text.replace(hit, name.size(), replacement);
      from = hit + replacement.size();
    } else {
      from = hit + 1;
    }
  }
}

// The evaluator compares a function by its name as the function table spells it.
QString TableSpelling(const Workspace& ws, const QString& word) {
  for (const QString& f : ws.MathFunctions) {
    if (!f.isEmpty() && f.compare(word, Qt::CaseInsensitive) == 0) return f;
  }
  return word;
}

}  // namespace

bool IsWholeName(const QString& text, qsizetype position, const QString& name) {
  const QChar before = position > 0 && position <= text.size() ? text.at(position - 1) : QChar(' ');
  const qsizetype end = position + name.size();
  const QChar behind = end >= 0 && end < text.size() ? text.at(end) : QChar(' ');
  return !IsNameCharacter(before) && !IsNameCharacter(behind);
}

QString BindChannelNames(Workspace& ws, int slot, const QString& expression) {
  const OutingRec& o = OutingAt(ws, slot);
  QString text = expression;
  const int last = std::min<int>(o.LastChannel, static_cast<int>(o.Channels.size()) - 1);
  for (int c = 0; c <= last; ++c) {
    const ChannelRec& channel = o.Channels[static_cast<std::size_t>(c)];
    const QString name = RightTrimmed(channel.Name);
    // "Lap Distance" holds "Distance": once it lies ahead, Distance binds nothing more in this
    // formula. Channel names are held in upper case, so the test ignores case.
    const bool distance = name.compare(QLatin1String("Distance"), Qt::CaseInsensitive) == 0;
    ReplaceWholeNames(text, name, Reference(channel.Key < kFirstMathKey ? '$' : '@', c),
                      distance ? QStringLiteral("Lap Distance") : QString());
  }
  return text;
}

QString BindConstants(Workspace& ws, int slot, const QString& text) {
  const OutingRec& o = OutingAt(ws, slot);
  QString bound = text;
  for (const ConstantRec& constant : o.OutingConstants) {
    double value = LeadingNumber(ResolveConstantLink(constant.Value));
    if (value == 0) value = 0;  // no "-0.000000"
    // Six decimals only: a constant is fixed into the formula until the next compile.
    ReplaceWholeNames(bound, RightTrimmed(constant.Name), QString::number(value, 'f', 6), QString());
  }
  return bound;
}

int OperatorPriority(const QString& word) {
  if (word == QLatin1String("^")) return 0;
  if (word == QLatin1String("*")) return 1;
  if (word == QLatin1String("/")) return 2;
  if (word == QLatin1String("+")) return 3;
  if (word == QLatin1String("-")) return 4;
  return -1;
}

void CompilePostfix(Workspace& ws, int slot, int i) {
  OutingRec& o = OutingAt(ws, slot);
  if (i < 0 || i >= ws.MathCount || i >= static_cast<int>(ws.MathDefs.size())) return;
  if (static_cast<int>(o.Postfix.size()) <= i) o.Postfix.resize(static_cast<std::size_t>(i) + 1);
  PostfixRec& rec = o.Postfix[static_cast<std::size_t>(i)];
  rec.Tokens.resize(kPostfixTokenCount);
  const QString& t = ws.MathDefs[static_cast<std::size_t>(i)].BoundText;
  const qsizetype n = t.size();

  // Tokens go straight into the outing's array; Count is stored only when the whole text went
  // through, so a compile that stops leaves the previous Count standing.
  int count = 0;
  auto output = [&](const QString& text, int16_t kind) {
    if (count >= kPostfixTokenCount) return false;
    rec.Tokens[static_cast<std::size_t>(count++)] = {text, kind};
    return true;
  };
  std::array<QString, kMathStackLimit + 1> stack;
  int depth = 0;
  auto pop = [&] {
    --depth;
    return output(TableSpelling(ws, stack[static_cast<std::size_t>(depth)]), kTokenOperator);
  };
  // marks[level] is the depth of the operator stack when that parenthesis level was opened: what
  // lies below it belongs outside the parentheses and is never popped from inside them.
  std::vector<int> marks{0, 0};
  int level = 1;

  qsizetype p = 0;
  while (p < n) {
    const QChar c = t.at(p);
    if (c == ' ') {
      qsizetype next = t.indexOf(' ', p + 1);
      if (next < 0) next = n;
      const QString word = RightTrimmed(t.mid(p + 1, next - p - 1));
      p = next + 1;
      const int w = OperatorPriority(word);
      if (w != -1) {
        while (depth > marks[static_cast<std::size_t>(level)] &&
               w >= OperatorPriority(stack[static_cast<std::size_t>(depth - 1)])) {
          if (!pop()) return;
        }
      }
      stack[static_cast<std::size_t>(depth++)] = word;
    } else if (c == '(') {
      ++level;
      if (static_cast<int>(marks.size()) <= level) marks.resize(static_cast<std::size_t>(level) + 1);
      marks[static_cast<std::size_t>(level)] = depth;
      ++p;
    } else if (c == ')') {
      if (level <= 1) return;  // one ")" too many: the compile ends here
      while (depth > marks[static_cast<std::size_t>(level)]) {
        if (!pop()) return;
      }
      --level;
      ++p;
    } else if (c == '$' || c == '@') {
      if (!output(t.mid(p + 1, 3), c == '$' ? kTokenChannel : kTokenMathChannel)) return;
      p += 4;
    } else if (IsDigit(c) || c == '.' || c == '-') {
      qsizetype end = p + 1;
      while (end < n && (IsDigit(t.at(end)) || t.at(end) == '.')) ++end;
      if (!output(t.mid(p, end - p), kTokenNumber)) return;
      p = end;
    } else {
      return;  // a name the outing doesn't have, or any other character
    }
    if (depth > kMathStackLimit) {
      ws.messages.Show(QStringLiteral("Math Stack Overflow"), QStringLiteral("Postfix Math"), MessageIcon::None);
      rec.Count = 0;
      return;
    }
  }
  while (depth > 0) {
    if (!pop()) return;
  }
  rec.Count = static_cast<int16_t>(count);
}

void AssignMathChannelIDs(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  for (int i = 0; i < ws.MathCount; ++i) {
    const std::size_t index = static_cast<std::size_t>(o.LoggedCount + 3 + i);
    if (index < o.Channels.size()) o.Channels[index].Key = static_cast<uint16_t>(kFirstMathKey + i);
  }
}

void CompileOutingMath(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  const int count = std::min<int>(ws.MathCount, static_cast<int>(ws.MathDefs.size()));
  o.Postfix.resize(static_cast<std::size_t>(std::max(count, 0)));
  for (int i = 0; i < count; ++i) {
    MathDefRec& d = ws.MathDefs[static_cast<std::size_t>(i)];
    d.BoundText = BindConstants(ws, slot, BindChannelNames(ws, slot, d.Expression));
    CompilePostfix(ws, slot, i);
  }
  // Samples computed from the old tokens no longer hold.
  for (LapRec& lap : o.Laps) {
    for (int i = 0; i < count; ++i) {
      const std::size_t index = static_cast<std::size_t>(o.LoggedCount + 3 + i);
      if (index >= lap.LapChannels.size()) break;
      LapChannelRec& cache = lap.LapChannels[index];
      cache.Samples.clear();
      cache.Loaded = 0;
    }
  }
}
