#include "toolkit/PKStringAdditions.h"

#include <QList>
#include <QRegularExpression>
#include <array>
#include <stdexcept>

namespace kestrova::PKStringAdditions {

namespace {

struct Replacement {
  QStringView before;
  QStringView after;
};

/// Applied one after the other, each to the result of the previous ones.
constexpr std::array<Replacement, 21> turkishRepairs{{
    // ISO 8859-9 or Windows-1254, read as Latin-1.
    {u"\u00FD", u"\u0131"},
    {u"\u00DD", u"\u0130"},
    {u"\u00F0", u"\u011F"},
    {u"\u00D0", u"\u011E"},
    {u"\u00FE", u"\u015F"},
    {u"\u00DE", u"\u015E"},
    // UTF-8, read as Windows-1252 or Latin-1.
    {u"\u00C4\u00B1", u"\u0131"},
    {u"\u00C3\u00A7", u"\u00E7"},
    {u"\u00C5\u0178", u"\u015F"},
    {u"\u00C4\u00B0", u"\u0130"},
    {u"\u00C3\u00BC", u"\u00FC"},
    {u"\u00C3\u2021", u"\u00C7"},
    {u"\u00C4\u0178", u"\u011F"},
    {u"\u00C3\u0153", u"\u00DC"},
    {u"\u00C5\uFFFD", u"\u015E"},
    {u"\u00C3\u00B6", u"\u00F6"},
    {u"\u00C3\u2013", u"\u00D6"},
    {u"\u00C4\u0178", u"\u011E"},  // never found: the same letters were replaced five rows above
    {u"\u00C5\u009E", u"\u015E"},
    // Curly quotes, read in the same way, become a plain apostrophe.
    {u"\u00E2\u20AC\u2122", u"'"},
    {u"\u00E2\u20AC\u02DC", u"'"},
}};

constexpr CompareOptions allOptions =
    CompareOption::caseInsensitive | CompareOption::literal | CompareOption::backwards |
    CompareOption::anchored | CompareOption::numeric | CompareOption::diacriticInsensitive |
    CompareOption::widthInsensitive | CompareOption::forcedOrdering | CompareOption::regularExpression;
constexpr CompareOptions optionsOfRegularExpressions =
    CompareOption::regularExpression | CompareOption::caseInsensitive | CompareOption::anchored;

void requireKnown(CompareOptions options) {
  const bool isPattern = options.testFlag(CompareOption::regularExpression);
  if ((options & ~(isPattern ? optionsOfRegularExpressions : allOptions)) != 0)
    throw std::invalid_argument("search options that are unknown or do not go together");
}

QString withUsualWidths(QStringView text) {
  QString result;
  for (const QChar c : text) {
    const auto form = c.decompositionTag();
    result += form == QChar::Wide || form == QChar::Narrow ? c.decomposition() : QString(c);
  }
  // A half-width letter has its voiced sound mark after it, which the usual one includes.
  return result.normalized(QString::NormalizationForm_C);
}

QString withoutMarks(const QString& text) {
  QString result = text.normalized(QString::NormalizationForm_D);
  return result.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
}

/// The text without the differences that are ignored.
QString folded(QStringView text, CompareOptions options) {
  QString result = text.toString();
  if (options.testFlag(CompareOption::widthInsensitive)) result = withUsualWidths(result);
  if (options.testFlag(CompareOption::diacriticInsensitive)) result = withoutMarks(result);
  return result;
}

bool finds(QStringView text, QStringView other, CompareOptions options) {
  if (other.isEmpty()) return false;
  const auto sensitivity =
      options.testFlag(CompareOption::caseInsensitive) ? Qt::CaseInsensitive : Qt::CaseSensitive;
  if (!options.testFlag(CompareOption::anchored)) return text.contains(other, sensitivity);
  return options.testFlag(CompareOption::backwards) ? text.endsWith(other, sensitivity)
                                                    : text.startsWith(other, sensitivity);
}

bool matches(QStringView text, QStringView pattern, CompareOptions options) {
  QRegularExpression::PatternOptions how = QRegularExpression::UseUnicodePropertiesOption;
  if (options.testFlag(CompareOption::caseInsensitive)) how |= QRegularExpression::CaseInsensitiveOption;
  const QRegularExpression expression(pattern.toString(), how);
  const auto where = options.testFlag(CompareOption::anchored) ? QRegularExpression::AnchorAtOffsetMatchOption
                                                               : QRegularExpression::NoMatchOption;
  return expression.isValid() &&
         expression.match(text.toString(), 0, QRegularExpression::NormalMatch, where).hasMatch();
}

bool isAlphanumeric(char32_t c) { return QChar::isLetterOrNumber(c) || QChar::isMark(c); }

}  // namespace

bool containsString(QStringView text, QStringView other, CompareOptions options) {
  constexpr CompareOptions foldings = CompareOption::widthInsensitive | CompareOption::diacriticInsensitive;
  requireKnown(options);
  if (other.isEmpty()) return false;
  if (options.testFlag(CompareOption::regularExpression)) return matches(text, other, options);
  if (!options.testAnyFlags(foldings)) return finds(text, other, options);
  return finds(folded(text, options), folded(other, options), options);
}

bool containsString(QStringView text, QStringView other) { return containsString(text, other, {}); }

QString convertTurkish(const QString& text) {
  QString repaired = text;
  for (const auto& [before, after] : turkishRepairs) {
    repaired.replace(before.data(), before.size(), after.data(), after.size());
  }
  return repaired;
}

QString getOnlyLetterVersion(QStringView text) {
  QString kept;
  kept.reserve(text.size());
  for (const char32_t c : text.toUcs4()) {  // an unpaired surrogate comes as U+FFFD
    if (isAlphanumeric(c)) kept += QChar::fromUcs4(c);
  }
  return kept;
}

}  // namespace kestrova::PKStringAdditions
