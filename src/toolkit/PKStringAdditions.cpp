#include "toolkit/PKStringAdditions.h"

#include <QList>
#include <array>

namespace kestrova::PKStringAdditions {

namespace {

struct Replacement {
  QStringView before;
  QStringView after;
};

/// Applied one after the other, each to the result of those before it.
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

bool isAlphanumeric(char32_t c) { return QChar::isLetterOrNumber(c) || QChar::isMark(c); }

}  // namespace

bool containsString(QStringView text, QStringView other, CompareOptions options) {
  if (other.isEmpty()) return false;
  const auto sensitivity =
      options.testFlag(CompareOption::caseInsensitive) ? Qt::CaseInsensitive : Qt::CaseSensitive;
  if (!options.testFlag(CompareOption::anchored)) return text.contains(other, sensitivity);
  return options.testFlag(CompareOption::backwards) ? text.endsWith(other, sensitivity)
                                                    : text.startsWith(other, sensitivity);
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
