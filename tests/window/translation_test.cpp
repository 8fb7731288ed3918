#include "german.h"
#include "support/process.h"
#include "window/elided_label.h"
#include "window/run_texts.h"
#include "window/shown_text.h"
#include "window/source_list.h"
#include "window/value_combo_box.h"
#include "window_fixture.h"

#include <QFile>
#include <QMenuBar>
#include <QXmlStreamReader>

namespace kestrova::test {

namespace {

QByteArray contentsOf(const Path& file) {
  QFile opened(QString::fromStdString(file.native()));
  return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
}

TEST(Translations, AreUpToDateWithTheSources) {
  const Path sources(KESTROVA_TRANSLATIONS);
  const TemporaryFolder folder;
  for (const char* name : {"kestrova_de.ts", "kestrova_en.ts"}) {
    std::filesystem::copy_file(sources / name, folder / name);
  }
  const auto update = runProcess({(sources / "update").native(), folder.path().native()});
  ASSERT_EQ(update.status, 0) << update.err;
  for (const char* name : {"kestrova_de.ts", "kestrova_en.ts"}) {
    EXPECT_EQ(contentsOf(folder / name), contentsOf(sources / name))
        << "run src/resources/translations/update";
  }
}

/// Calls `visit(source, translations)` for every text of a translation.
template <typename Visit>
void forEachText(const char* name, Visit visit) {
  const QByteArray contents = contentsOf(Path(KESTROVA_TRANSLATIONS) / name);
  QXmlStreamReader reader(contents);
  QString source;
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    if (reader.name() == QStringLiteral("source")) source = reader.readElementText();
    if (reader.name() != QStringLiteral("translation")) continue;
    const bool isFinished = !reader.attributes().hasAttribute(QStringLiteral("type"));
    EXPECT_TRUE(isFinished) << source.toStdString();
    QStringList texts;
    const QString whole = reader.readElementText(QXmlStreamReader::IncludeChildElements);
    for (const QString& text : whole.split(u'\n')) {
      if (!text.trimmed().isEmpty()) texts << text.trimmed();
    }
    visit(source, texts);
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
}

TEST(Translations, LeaveNoTextOut) {
  int count = 0;
  forEachText("kestrova_de.ts", [&](const QString& source, const QStringList& texts) {
    EXPECT_FALSE(texts.isEmpty()) << source.toStdString();
    ++count;
  });
  constexpr int manyTexts = 100;
  EXPECT_GT(count, manyTexts) << "few texts were read";
  forEachText("kestrova_en.ts", [](const QString& source, const QStringList& texts) {
    EXPECT_EQ(texts.size(), 2) << source.toStdString();
  });
}

TEST(Translations, KeepArgumentsAndMnemonics) {
  forEachText("kestrova_de.ts", [](const QString& source, const QStringList& texts) {
    for (const char* mark : {"%1", "%2", "%Ln", "&"}) {
      const auto sought = QLatin1String(mark);
      for (const QString& text : texts)
        EXPECT_EQ(text.count(sought), source.count(sought)) << source.toStdString();
    }
  });
}

TEST(ShownText, StandsAsItIsWhenItIsNotKnown) {
  const German german;
  const auto text = QStringLiteral("EXCEPTION copyFiles : %1 & more");
  EXPECT_EQ(shownText(text), text);
  EXPECT_EQ(shownTitle(QStringLiteral("Unknown")), QStringLiteral("&Unknown"));
}

TEST(ShownText, CarriesArgumentsOver) {
  const German german;
  EXPECT_EQ(shownText(QStringLiteral("Copying Photo (JPG) 961")),
            QStringLiteral("Foto (JPG) 961 wird kopiert"));
  EXPECT_EQ(shownText(QStringLiteral("Resizing photo 7 for 720P")),
            QStringLiteral("Foto 7 wird auf 720P verkleinert"));
  EXPECT_EQ(shownText(QStringLiteral("Completed")), QStringLiteral("Abgeschlossen"));
}

TEST(ShownText, IsTheControllersOwnInEnglish) {
  for (const char* text :
       {"Copying Photo (JPG) 961", "Copying VIDEO 3", "Deciding operations 12", "Paused"}) {
    EXPECT_EQ(shownText(QString::fromLatin1(text)), QString::fromLatin1(text));
  }
  EXPECT_EQ(shownTitle(QStringLiteral("Stop")), QStringLiteral("S&top"));
}

TEST(Plurals, AreRightInGerman) {
  const German german;
  EXPECT_EQ(progressText({{.phase = RunPhase::scanning}, 1}), QStringLiteral("1 Datei gefunden"));
  EXPECT_EQ(progressText({{.phase = RunPhase::scanning}, 2}), QStringLiteral("2 Dateien gefunden"));
  EXPECT_EQ(timeLeftText(std::chrono::seconds(60)), QStringLiteral("Noch etwa 1 Minute"));
  EXPECT_EQ(timeLeftText(std::chrono::seconds(300)), QStringLiteral("Noch etwa 5 Minuten"));
  EXPECT_EQ(remainderText({.failed = 1}), QStringLiteral("1 Datei konnte nicht geschrieben werden."));
}

class AGermanWindow : public WindowTest {
 protected:
  German german;
};

TEST_F(AGermanWindow, SpeaksGermanThroughout) {
  open();
  EXPECT_EQ(title("buttonStart"), QStringLiteral("Starten"));
  EXPECT_EQ(title("buttonStop"), QStringLiteral("Stopp"));
  EXPECT_EQ(text("sourceHeading"), QStringLiteral("&1   Quellordner"));
  EXPECT_EQ(widget<ValueComboBox>("comboCopy").displayedValue(), QStringLiteral("Fotos und Videos"));
  EXPECT_EQ(widget<SourceList>("sourceList").placeholderText(),
            QStringLiteral("Ordner hinzufügen oder hierher ziehen"));
  click("buttonStart");
  EXPECT_TRUE(eventually(
      [this] { return text("lblStatus") == QStringLiteral("Bitte zuerst Schritt 1 und 2 ausfüllen"); }));
}

TEST_F(AGermanWindow, OrganisesIntoEnglishFolders) {
  writeFile(folder / "in/a.jpg", jpegPhoto({.digitized = "2014:05:21 13:45:02"}));
  open();
  addSource(folder / "in");
  setTarget(folder / "out");
  click("buttonStart");
  ASSERT_TRUE(eventually([this] { return text("lblStatus") == QStringLiteral("Abgeschlossen"); }));
  EXPECT_EQ(text("progressText"), QStringLiteral("1 von 1 Datei"));
  EXPECT_TRUE(std::filesystem::is_directory(folder / "out/2014/05/21-May-2014 Wednesday"));
  EXPECT_EQ(controls().lblStatus->stringValue(), QStringLiteral("Completed"))
      << "the controller speaks English";
}

TEST_F(AGermanWindow, HasADifferentMnemonicForEachThing) {
  open();
  QStringList texts{shownTitle(QStringLiteral("Pause")), shownTitle(QStringLiteral("Continue"))};
  for (auto* label : window->findChildren<QLabel*>()) {
    if (label->buddy()) texts << label->text();
  }
  for (auto* button : window->findChildren<QAbstractButton*>()) texts << button->text();
  for (auto* action : window->menuBar()->actions()) texts << action->text();
  std::map<QChar, QString> owners;
  for (const QString& text : texts) {
    const auto at = text.indexOf(u'&');
    if (at < 0) continue;
    const QChar mnemonic = text.at(at + 1).toUpper();
    EXPECT_FALSE(owners.contains(mnemonic)) << qPrintable(text + u' ' + owners[mnemonic]);
    owners[mnemonic] = text;
  }
  EXPECT_EQ(owners.size(), 19U);
}

}  // namespace

}  // namespace kestrova::test
