#include "window/shown_text.h"

#include "model/options.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <array>
#include <vector>

namespace kestrova {

namespace {

constexpr const char* context = "Controller";

constexpr std::array titles{
    QT_TRANSLATE_NOOP("Controller", "&Start"), QT_TRANSLATE_NOOP("Controller", "&Pause"),
    QT_TRANSLATE_NOOP("Controller", "&Continue"), QT_TRANSLATE_NOOP("Controller", "S&top")};

constexpr std::array texts{
    QT_TRANSLATE_NOOP("Controller", "Please complete step 1 and 2 first"),
    QT_TRANSLATE_NOOP("Controller", "Process started!"),
    QT_TRANSLATE_NOOP("Controller", "Analyzing source folders"),
    QT_TRANSLATE_NOOP("Controller", "Deciding operations %1"),
    QT_TRANSLATE_NOOP("Controller", "Copying Photo (%1) %2"),
    QT_TRANSLATE_NOOP("Controller", "Copying VIDEO %1"),
    rowOf(Resolution::original)->status,
    rowOf(Resolution::fit720p)->status,
    rowOf(Resolution::fit1080p)->status,
    QT_TRANSLATE_NOOP("Controller", "Paused"),
    QT_TRANSLATE_NOOP("Controller", "Completed"),
    QT_TRANSLATE_NOOP("Controller", "Stopped"),
    QT_TRANSLATE_NOOP("Controller", "Not enough space!"),
    QT_TRANSLATE_NOOP("Controller", "The disk did not confirm what was written: %1"),
    QT_TRANSLATE_NOOP("Controller", "The target folder cannot be used: %1"),
    QT_TRANSLATE_NOOP("Controller", "Error"),
    QT_TRANSLATE_NOOP("Controller", "Info"),
    QT_TRANSLATE_NOOP("Controller", "Please wait until process is finished or stop it before exit."),
    QT_TRANSLATE_NOOP("Controller", "OK"),
    QT_TRANSLATE_NOOP("Controller", "Alert"),
    QT_TRANSLATE_NOOP("Controller", "Do you really want to exit?"),
    QT_TRANSLATE_NOOP("Controller", "Exit"),
    QT_TRANSLATE_NOOP("Controller", "Cancel")};

// A known text, and what matches it with anything in the places of its arguments.
struct Template {
  const char* text;
  QRegularExpression pattern;
};

Template templateOf(const char* text) {
  QString pattern = QRegularExpression::escape(QString::fromLatin1(text));
  for (const char* place : {"\\%1", "\\%2"}) pattern.replace(QLatin1String(place), QStringLiteral("(.*)"));
  return {text, QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                                   QRegularExpression::DotMatchesEverythingOption)};
}

const std::vector<Template>& templates() {
  static const auto all = [] {
    std::vector<Template> made;
    made.reserve(texts.size());
    for (const char* text : texts) made.push_back(templateOf(text));
    return made;
  }();
  return all;
}

QString withArguments(const QString& text, const QRegularExpressionMatch& match) {
  switch (match.lastCapturedIndex()) {
    case 1:
      return text.arg(match.captured(1));
    case 2:
      return text.arg(match.captured(1), match.captured(2));
    default:
      return text;
  }
}

}  // namespace

QString shownText(const QString& text) {
  for (const Template& known : templates()) {
    const auto match = known.pattern.match(text);
    if (match.hasMatch()) return withArguments(QCoreApplication::translate(context, known.text), match);
  }
  return text;
}

QString shownTitle(const QString& title) {
  for (const char* known : titles) {
    if (QString::fromLatin1(known).remove(u'&') == title) return QCoreApplication::translate(context, known);
  }
  return u'&' + title;
}

}  // namespace kestrova
