#pragma once

#include <QFlags>
#include <QString>
#include <QStringView>

namespace kestrova::PKStringAdditions {

/// How `containsString` compares. No option at all is a literal, case-sensitive search.
enum class CompareOption : unsigned {
  caseInsensitive = 1,
  backwards = 4,  ///< search from the end; it changes the answer only together with `anchored`
  anchored = 8,   ///< find it only at the start of the text; with `backwards`, only at its end
};
Q_DECLARE_FLAGS(CompareOptions, CompareOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(CompareOptions)

/// Whether `other` stands in `text`. Composed and decomposed letters differ. An empty `other` is never found.
bool containsString(QStringView text, QStringView other, CompareOptions options);
bool containsString(QStringView text, QStringView other);

/// Repairs Turkish letters of a text that was decoded with the wrong code page. The repair is unconditional:
/// every ý becomes ı, even where the text meant ý.
QString convertTurkish(const QString& text);

/// The text's letters, marks and numbers of every script, in order; everything else is dropped.
QString getOnlyLetterVersion(QStringView text);

}  // namespace kestrova::PKStringAdditions
