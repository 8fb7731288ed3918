<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Controller</name>
    <message>
        <source>&amp;Start</source>
        <translation>&amp;Starten</translation>
    </message>
    <message>
        <source>&amp;Pause</source>
        <translation>&amp;Pause</translation>
    </message>
    <message>
        <source>&amp;Continue</source>
        <translation>Fortset&amp;zen</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>S&amp;topp</translation>
    </message>
    <message>
        <source>Please complete step 1 and 2 first</source>
        <translation>Bitte zuerst Schritt 1 und 2 ausfüllen</translation>
    </message>
    <message>
        <source>Process started!</source>
        <translation>Vorgang gestartet!</translation>
    </message>
    <message>
        <source>Analyzing source folders</source>
        <translation>Quellordner werden untersucht</translation>
    </message>
    <message>
        <source>Deciding operations %1</source>
        <translation>Entscheidung über Datei %1</translation>
    </message>
    <message>
        <source>Copying Photo (%1) %2</source>
        <translation>Foto (%1) %2 wird kopiert</translation>
    </message>
    <message>
        <source>Copying VIDEO %1</source>
        <translation>Video %1 wird kopiert</translation>
    </message>
    <message>
        <source>Rotating photo %1</source>
        <translation>Foto %1 wird gedreht</translation>
    </message>
    <message>
        <source>Resizing photo %1 for 720P</source>
        <translation>Foto %1 wird auf 720P verkleinert</translation>
    </message>
    <message>
        <source>Resizing photo %1 for 1080P</source>
        <translation>Foto %1 wird auf 1080P verkleinert</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Abgeschlossen</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Not enough space!</source>
        <translation>Nicht genug Platz!</translation>
    </message>
    <message>
        <source>The disk did not confirm what was written: %1</source>
        <translation>Die Festplatte hat das Geschriebene nicht bestätigt: %1</translation>
    </message>
    <message>
        <source>The target folder cannot be used: %1</source>
        <translation>Der Zielordner ist nicht zu gebrauchen: %1</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Please wait until process is finished or stop it before exit.</source>
        <translation>Bitte warten Sie, bis der Vorgang fertig ist, oder brechen Sie ihn vor dem Beenden mit „Stopp“ ab.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Alert</source>
        <translation>Achtung</translation>
    </message>
    <message>
        <source>Do you really want to exit?</source>
        <translation>Möchten Sie wirklich beenden?</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>FolderPanel</name>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>Folders whose names are not valid text</source>
        <translation>Ordner, deren Namen kein gültiger Text sind</translation>
    </message>
</context>
<context>
    <name>Items</name>
    <message>
        <source>Photos and videos</source>
        <translation>Fotos und Videos</translation>
    </message>
    <message>
        <source>Photos only</source>
        <translation>Nur Fotos</translation>
    </message>
    <message>
        <source>Videos only</source>
        <translation>Nur Videos</translation>
    </message>
    <message>
        <source>JPEG</source>
        <translation>JPEG</translation>
    </message>
    <message>
        <source>JPEG and TIFF</source>
        <translation>JPEG und TIFF</translation>
    </message>
    <message>
        <source>JPEG, TIFF and PNG</source>
        <translation>JPEG, TIFF und PNG</translation>
    </message>
    <message>
        <source>Original size</source>
        <translation>Originalgröße</translation>
    </message>
    <message>
        <source>720P (1280 x 720)</source>
        <translation>720P (1280 x 720)</translation>
    </message>
    <message>
        <source>1080P (1920 x 1080)</source>
        <translation>1080P (1920 x 1080)</translation>
    </message>
</context>
<context>
    <name>Run</name>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>%1 (paused)</source>
        <translation>%1 (angehalten)</translation>
    </message>
    <message>
        <source>No photos or videos found</source>
        <translation>Keine Fotos oder Videos gefunden</translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) found</source>
        <translation>
            <numerusform>%Ln Datei gefunden</numerusform>
            <numerusform>%Ln Dateien gefunden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %Ln file(s)</source>
        <translation>
            <numerusform>%1 von %Ln Datei</numerusform>
            <numerusform>%1 von %Ln Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>A few seconds left</source>
        <translation>Noch ein paar Sekunden</translation>
    </message>
    <message>
        <source>Less than a minute left</source>
        <translation>Noch weniger als eine Minute</translation>
    </message>
    <message numerus="yes">
        <source>About %Ln minute(s) left</source>
        <translation>
            <numerusform>Noch etwa %Ln Minute</numerusform>
            <numerusform>Noch etwa %Ln Minuten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>About %Ln hour(s) left</source>
        <translation>
            <numerusform>Noch etwa %Ln Stunde</numerusform>
            <numerusform>Noch etwa %Ln Stunden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) written.</source>
        <translation>
            <numerusform>%Ln Datei geschrieben.</numerusform>
            <numerusform>%Ln Dateien geschrieben.</numerusform>
        </translation>
    </message>
    <message>
        <source>There are no photos or videos in these folders. To try others, close Kestrova and open it again.</source>
        <translation>In diesen Ordnern sind keine Fotos oder Videos. Für einen Versuch mit anderen schließen Sie Kestrova und öffnen es wieder.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) could not be written.</source>
        <translation>
            <numerusform>%Ln Datei konnte nicht geschrieben werden.</numerusform>
            <numerusform>%Ln Dateien konnten nicht geschrieben werden.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) were left out, as another file has their name.</source>
        <translation>
            <numerusform>%Ln Datei wurde ausgelassen, weil eine andere ihren Namen trägt.</numerusform>
            <numerusform>%Ln Dateien wurden ausgelassen, weil andere ihre Namen tragen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) were in the target already.</source>
        <translation>
            <numerusform>%Ln Datei war schon im Zielordner.</numerusform>
            <numerusform>%Ln Dateien waren schon im Zielordner.</numerusform>
        </translation>
    </message>
    <message>
        <source>The target folder cannot be used: %1</source>
        <translation>Der Zielordner ist nicht zu gebrauchen: %1</translation>
    </message>
</context>
<context>
    <name>kestrova::DropHighlight</name>
    <message>
        <source>What a drop does</source>
        <translation>Was beim Ablegen geschieht</translation>
    </message>
</context>
<context>
    <name>kestrova::MainWindow</name>
    <message>
        <source>&amp;1   Source folders</source>
        <translation>&amp;1   Quellordner</translation>
    </message>
    <message>
        <source>Choose a folder to organise. You can also drop folders on the window.</source>
        <translation>Einen Ordner auswählen, der geordnet werden soll. Ordner lassen sich auch auf das Fenster ziehen.</translation>
    </message>
    <message>
        <source>&amp;Add folder…</source>
        <translation>&amp;Ordner hinzufügen…</translation>
    </message>
    <message>
        <source>Remove the selected folders from the list. The folders themselves are not changed.</source>
        <translation>Die markierten Ordner aus der Liste nehmen. Die Ordner selbst bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>The folders whose photos and videos are organised. Delete removes the selected ones.</source>
        <translation>Die Ordner, deren Fotos und Videos geordnet werden. Die Entfernen-Taste nimmt die markierten heraus.</translation>
    </message>
    <message>
        <source>Source folders</source>
        <translation>Quellordner</translation>
    </message>
    <message>
        <source>Add or drop the folders to organise</source>
        <translation>Ordner hinzufügen oder hierher ziehen</translation>
    </message>
    <message>
        <source>&amp;2   Target folder</source>
        <translation>&amp;2   Zielordner</translation>
    </message>
    <message>
        <source>Target folder</source>
        <translation>Zielordner</translation>
    </message>
    <message>
        <source>Choose or drop the folder for the result</source>
        <translation>Ordner für das Ergebnis auswählen oder hierher ziehen</translation>
    </message>
    <message>
        <source>Choose the folder in which the dated folders are created.</source>
        <translation>Den Ordner auswählen, in dem die Ordner nach Datum entstehen sollen.</translation>
    </message>
    <message>
        <source>Choos&amp;e…</source>
        <translation>A&amp;uswählen…</translation>
    </message>
    <message>
        <source>Ta&amp;ke</source>
        <translation>Auswah&amp;l</translation>
    </message>
    <message>
        <source>Which files are taken</source>
        <translation>Welche Dateien genommen werden</translation>
    </message>
    <message>
        <source>Photo for&amp;mats</source>
        <translation>Foto&amp;formate</translation>
    </message>
    <message>
        <source>Which files count as photos</source>
        <translation>Welche Dateien als Fotos gelten</translation>
    </message>
    <message>
        <source>Fol&amp;ders</source>
        <translation>Ordnerna&amp;men</translation>
    </message>
    <message>
        <source>How the folders in the target are named</source>
        <translation>Wie die Ordner im Zielordner heißen</translation>
    </message>
    <message>
        <source>Si&amp;ze</source>
        <translation>&amp;Größe</translation>
    </message>
    <message>
        <source>The largest size for photos</source>
        <translation>Wie groß die geschriebenen Fotos höchstens sind</translation>
    </message>
    <message>
        <source>Rotate photos that are stored sideways. The originals are not changed.</source>
        <translation>Fotos, die auf der Seite liegen, aufrecht schreiben. Die Originale bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>Turn photos &amp;upright</source>
        <translation>Fotos auf&amp;richten</translation>
    </message>
    <message>
        <source>Skip photos smaller than 20,000 bytes or 400 pixels on a side.</source>
        <translation>Fotos unter 20.000 Byte oder mit weniger als 400 Pixeln auf einer Seite auslassen.</translation>
    </message>
    <message>
        <source>Skip small phot&amp;os</source>
        <translation>&amp;Kleine Fotos auslassen</translation>
    </message>
    <message>
        <source>Skip videos smaller than 2,000,000 bytes.</source>
        <translation>Videos unter 2.000.000 Byte auslassen.</translation>
    </message>
    <message>
        <source>Skip small &amp;videos</source>
        <translation>Kleine &amp;Videos auslassen</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>Gefunden</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Written</source>
        <translation>Geschrieben</translation>
    </message>
    <message>
        <source>Photos</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>Photos found</source>
        <translation>Gefundene Fotos</translation>
    </message>
    <message>
        <source>Size of the photos found</source>
        <translation>Größe der gefundenen Fotos</translation>
    </message>
    <message>
        <source>Photos written</source>
        <translation>Geschriebene Fotos</translation>
    </message>
    <message>
        <source>Size of the photos written</source>
        <translation>Größe der geschriebenen Fotos</translation>
    </message>
    <message>
        <source>Videos</source>
        <translation>Videos</translation>
    </message>
    <message>
        <source>Videos found</source>
        <translation>Gefundene Videos</translation>
    </message>
    <message>
        <source>Size of the videos found</source>
        <translation>Größe der gefundenen Videos</translation>
    </message>
    <message>
        <source>Videos written</source>
        <translation>Geschriebene Videos</translation>
    </message>
    <message>
        <source>Size of the videos written</source>
        <translation>Größe der geschriebenen Videos</translation>
    </message>
    <message>
        <source>Rewritten</source>
        <translation>Neu geschrieben</translation>
    </message>
    <message>
        <source>Photos rewritten</source>
        <translation>Neu geschriebene Fotos</translation>
    </message>
    <message>
        <source>Size of the photos rewritten</source>
        <translation>Größe der neu geschriebenen Fotos</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Gesamt</translation>
    </message>
    <message>
        <source>Files found</source>
        <translation>Gefundene Dateien</translation>
    </message>
    <message>
        <source>Size of the files found</source>
        <translation>Größe der gefundenen Dateien</translation>
    </message>
    <message>
        <source>Files written</source>
        <translation>Geschriebene Dateien</translation>
    </message>
    <message>
        <source>Size of the files written</source>
        <translation>Größe der geschriebenen Dateien</translation>
    </message>
    <message>
        <source>Duplicates</source>
        <translation>Duplikate</translation>
    </message>
    <message>
        <source>Duplicates found</source>
        <translation>Gefundene Duplikate</translation>
    </message>
    <message>
        <source>Size of the duplicates found</source>
        <translation>Größe der gefundenen Duplikate</translation>
    </message>
    <message>
        <source>Already there</source>
        <translation>Schon vorhanden</translation>
    </message>
    <message>
        <source>Files that already existed</source>
        <translation>Dateien, die schon vorhanden waren</translation>
    </message>
    <message>
        <source>Size of the files that already existed</source>
        <translation>Größe der Dateien, die schon vorhanden waren</translation>
    </message>
    <message>
        <source>Small, skipped</source>
        <translation>Klein, ausgelassen</translation>
    </message>
    <message>
        <source>Small files skipped</source>
        <translation>Ausgelassene kleine Dateien</translation>
    </message>
    <message>
        <source>Size of the small files skipped</source>
        <translation>Größe der ausgelassenen kleinen Dateien</translation>
    </message>
    <message>
        <source>Name taken</source>
        <translation>Name vergeben</translation>
    </message>
    <message>
        <source>Files whose name was taken</source>
        <translation>Dateien, deren Name vergeben war</translation>
    </message>
    <message>
        <source>How many of the found files are finished</source>
        <translation>Wie viele der gefundenen Dateien erledigt sind</translation>
    </message>
    <message>
        <source>Progress of the run</source>
        <translation>Fortschritt des Vorgangs</translation>
    </message>
    <message>
        <source>Moves while the source folders are searched</source>
        <translation>Bewegt sich, solange die Quellordner durchsucht werden</translation>
    </message>
    <message>
        <source>Progress of the search</source>
        <translation>Fortschritt der Suche</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Show the target folder in the file manager</source>
        <translation>Den Zielordner in der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Ope&amp;n target folder</source>
        <translation>Zielordner öff&amp;nen</translation>
    </message>
    <message>
        <source>Stop after the current file. Files already written are kept.</source>
        <translation>Den Vorgang nach der laufenden Datei abbrechen. Was geschrieben ist, bleibt.</translation>
    </message>
    <message>
        <source>Start, pause or continue the run (Ctrl+Return)</source>
        <translation>Den Vorgang starten, anhalten oder fortsetzen (Strg+Eingabe)</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Share</source>
        <translation>&amp;Teilen</translation>
    </message>
    <message>
        <source>&amp;Add source folder…</source>
        <translation>&amp;Quellordner hinzufügen…</translation>
    </message>
    <message>
        <source>Choose &amp;target folder…</source>
        <translation>&amp;Zielordner auswählen…</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Suggest a &amp;feature</source>
        <translation>Eine &amp;Funktion vorschlagen</translation>
    </message>
    <message>
        <source>Write a &amp;review</source>
        <translation>&amp;Bewertung schreiben</translation>
    </message>
    <message>
        <source>Make this the target folder</source>
        <translation>Als Zielordner verwenden</translation>
    </message>
    <message>
        <source>Add to the source folders</source>
        <translation>Zu den Quellordnern hinzufügen</translation>
    </message>
</context>
</TS>
