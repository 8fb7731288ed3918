#pragma once

#include <QFlags>
#include <QString>
#include <QStringView>

namespace kestrova::PKStringAdditions {

/// How `containsString` compares; the numbers of NSStringCompareOptions. Without any option it is a literal,
/// case-sensitive search.
enum class CompareOption : unsigned {
  caseInsensitive = 1,
  literal = 2,                 ///< character by character, which a search is anyway
  backwards = 4,               ///< search from the end; it changes the answer only together with `anchored`
  anchored = 8,                ///< find it only at the start of the text; with `backwards`, only at its end
  numeric = 64,                ///< numbers by their value; it only matters for sorting, not for searching
  diacriticInsensitive = 128,  ///< letters count without their marks
  widthInsensitive = 256,      ///< full-width and half-width forms count as the usual ones
  forcedOrdering = 512,        ///< it only matters for sorting, not for searching
  /// `other` is a regular expression whose character classes cover all of Unicode. It can only be combined
  /// with `caseInsensitive` and `anchored`. A malformed one is never found.
  regularExpression = 1024,
};
Q_DECLARE_FLAGS(CompareOptions, CompareOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(CompareOptions)

/// Whether `text` contains `other`. Composed and decomposed letters differ, unless their marks or widths do
/// not count. An empty `other` is never found. Throws std::invalid_argument if `options` has an unknown bit,
/// or an option that cannot be combined with `regularExpression`.
bool containsString(QStringView text, QStringView other, CompareOptions options);
bool containsString(QStringView text, QStringView other);

/// Repairs Turkish letters of a text that was decoded with the wrong code page. The repair is unconditional:
/// every ý becomes ı, even where the text meant ý.
QString convertTurkish(const QString& text);

/// The text's letters, marks and numbers of every script, in order; everything else is dropped.
QString getOnlyLetterVersion(QStringView text);

}  // namespace kestrova::PKStringAdditions
