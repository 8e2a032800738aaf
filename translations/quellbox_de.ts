<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>frmAbout</name>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Logo</source>
        <translation>Logo</translation>
    </message>
    <message>
        <source>Company:</source>
        <translation>Firma:</translation>
    </message>
    <message>
        <source>Support:</source>
        <translation>Support:</translation>
    </message>
    <message>
        <source>Downloads:</source>
        <translation>Downloads:</translation>
    </message>
    <message>
        <source>Feedback:</source>
        <translation>Feedback:</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>frmCleansing</name>
    <message>
        <source>Cleansing Wizard</source>
        <translation>Bereinigungs-Assistent</translation>
    </message>
    <message>
        <source>&amp;Select</source>
        <translation>&amp;Auswahl</translation>
    </message>
    <message>
        <source>&amp;Every archived message</source>
        <translation>&amp;Jede archivierte Nachricht</translation>
    </message>
    <message>
        <source>All, except to&amp;day&apos;s messages</source>
        <translation>Alle außer den heuti&amp;gen Nachrichten</translation>
    </message>
    <message>
        <source>All, except the last &amp;two days</source>
        <translation>Alle außer denen der letzten &amp;zwei Tage</translation>
    </message>
    <message>
        <source>Preserve one &amp;week (7 days)</source>
        <translation>Eine &amp;Woche (7 Tage) behalten</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
</context>
<context>
    <name>frmDeliveryFields</name>
    <message>
        <source>Unblocked messages &amp;leave by</source>
        <translation>Freigegebene &amp;Nachrichten gehen an</translation>
    </message>
    <message>
        <source>&amp;Mail server</source>
        <translation>&amp;Host</translation>
    </message>
    <message>
        <source>P&amp;ort</source>
        <translation>P&amp;ort</translation>
    </message>
    <message>
        <source>Se&amp;curity</source>
        <translation>&amp;Sicherung</translation>
    </message>
    <message>
        <source>&amp;User</source>
        <translation>Ben&amp;utzer</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keiner</translation>
    </message>
    <message>
        <source>&amp;Password</source>
        <translation>&amp;Passwort</translation>
    </message>
    <message>
        <source>Kept where the desktop keeps passwords, and not among the settings</source>
        <translation>Wird dort aufbewahrt, wo der Desktop Passwörter aufbewahrt, und nicht bei den Einstellungen</translation>
    </message>
    <message>
        <source>as before</source>
        <translation>wie bisher</translation>
    </message>
    <message>
        <source>Comm&amp;and, which gets the message as its input</source>
        <translation>Befe&amp;hl, der die Nachricht als Eingabe erhält</translation>
    </message>
</context>
<context>
    <name>frmFailures</name>
    <message>
        <source>Messages that could not be dealt with</source>
        <translation>Nicht bearbeitete Nachrichten</translation>
    </message>
    <message>
        <source>They are still where they were, though the list shows them no more. A refresh (F5) lists them again.</source>
        <translation>Sie sind noch, wo sie waren, auch wenn die Liste sie nicht mehr zeigt. Eine Aktualisierung (F5) listet sie wieder auf.</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Nachricht</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>What to do</source>
        <translation>Was tun</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>K&amp;opieren</translation>
    </message>
    <message>
        <source>Copy the list as text, to pass it on</source>
        <translation>Die Liste als Text kopieren, um sie weiterzugeben</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
</context>
<context>
    <name>frmFind</name>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Text to find in message header</source>
        <translation>Im Nachrichtenkopf zu suchender Text</translation>
    </message>
    <message>
        <source>Text to find</source>
        <translation>Zu suchender Text</translation>
    </message>
    <message>
        <source>In &amp;Header Field</source>
        <translation>In &amp;Kopffeld</translation>
    </message>
    <message>
        <source>&amp;Date</source>
        <translation>&amp;Datum</translation>
    </message>
    <message>
        <source>&amp;From</source>
        <translation>&amp;Von</translation>
    </message>
    <message>
        <source>&amp;Subject</source>
        <translation>&amp;Betreff</translation>
    </message>
    <message>
        <source>Si&amp;ze</source>
        <translation>&amp;Größe</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>Discard find history</source>
        <translation>Suchverlauf löschen</translation>
    </message>
</context>
<context>
    <name>frmFolders</name>
    <message>
        <source>Device / Directory</source>
        <translation>Laufwerk / Verzeichnis</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Laufwerk</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Verzeichnis</translation>
    </message>
    <message>
        <source>Share / UNC-path</source>
        <translation>Freigabe / UNC-Pfad</translation>
    </message>
    <message>
        <source>Use &amp;share (UNC path)</source>
        <translation>&amp;Freigabe verwenden (UNC-Pfad)</translation>
    </message>
    <message>
        <source>UNC path</source>
        <translation>UNC-Pfad</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
</context>
<context>
    <name>frmHelp</name>
    <message>
        <source>Quellbox Help</source>
        <translation>Quellbox-Hilfe</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>The topic shown before (Alt+Left)</source>
        <translation>Das zuvor angezeigte Thema (Alt+Links)</translation>
    </message>
    <message>
        <source>&amp;Forward</source>
        <translation>&amp;Vorwärts</translation>
    </message>
    <message>
        <source>The topic shown after this one (Alt+Right)</source>
        <translation>Das nach diesem angezeigte Thema (Alt+Rechts)</translation>
    </message>
    <message>
        <source>&amp;Smaller</source>
        <translation>&amp;Kleiner</translation>
    </message>
    <message>
        <source>Smaller text (Ctrl+minus)</source>
        <translation>Kleinere Schrift (Strg+Minus)</translation>
    </message>
    <message>
        <source>&amp;Larger</source>
        <translation>&amp;Größer</translation>
    </message>
    <message>
        <source>Larger text (Ctrl+plus)</source>
        <translation>Größere Schrift (Strg+Plus)</translation>
    </message>
    <message>
        <source>S&amp;earch the help:</source>
        <translation>Hilfe &amp;durchsuchen:</translation>
    </message>
    <message>
        <source>Search the help</source>
        <translation>Hilfe durchsuchen</translation>
    </message>
    <message>
        <source>Shows the topics that have these words (Ctrl+F)</source>
        <translation>Zeigt die Themen, in denen diese Wörter vorkommen (Strg+F)</translation>
    </message>
    <message>
        <source>No topic has these words.</source>
        <translation>Kein Thema enthält diese Wörter.</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Topic</source>
        <translation>Thema</translation>
    </message>
</context>
<context>
    <name>frmHistory</name>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <translation>&amp;Suchen:</translation>
    </message>
    <message>
        <source>Part of a sender, To, subject or file name</source>
        <translation>Teil von Absender, An, Betreff oder Dateiname</translation>
    </message>
    <message>
        <source>&amp;Action:</source>
        <translation>&amp;Aktion:</translation>
    </message>
    <message>
        <source>&amp;Result:</source>
        <translation>E&amp;rgebnis:</translation>
    </message>
    <message>
        <source>What was done, the newest first</source>
        <translation>Was getan wurde, das Neueste zuerst</translation>
    </message>
    <message>
        <source>Details of the selected entry</source>
        <translation>Einzelheiten des markierten Eintrags</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Put the messages of the selected entries back into the archive</source>
        <translation>Die Nachrichten der markierten Einträge ins Archiv zurücklegen</translation>
    </message>
    <message>
        <source>&amp;Export...</source>
        <translation>E&amp;xportieren...</translation>
    </message>
    <message>
        <source>Write the list that is shown into a file</source>
        <translation>Die angezeigte Liste in eine Datei schreiben</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>frmOptions</name>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation>&amp;Allgemein</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Informationen</translation>
    </message>
    <message>
        <source>&amp;Directories</source>
        <translation>&amp;Verzeichnisse</translation>
    </message>
    <message>
        <source>&amp;Archive</source>
        <translation>A&amp;rchiv</translation>
    </message>
    <message>
        <source>Archive directory</source>
        <translation>Archivverzeichnis</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Select the archive directory</source>
        <translation>Archivverzeichnis auswählen</translation>
    </message>
    <message>
        <source>&amp;Pickup</source>
        <translation>&amp;Pickup</translation>
    </message>
    <message>
        <source>Pickup directory</source>
        <translation>Pickup-Verzeichnis</translation>
    </message>
    <message>
        <source>Select the pickup directory</source>
        <translation>Pickup-Verzeichnis auswählen</translation>
    </message>
    <message>
        <source>Use select ... button to choose folders on your Exchange server, accessible via drive letter mapping or UNC-path.</source>
        <translation>Mit der Schaltfläche „Auswählen“ wählen Sie Verzeichnisse auf Ihrem Exchange-Server, die über einen Laufwerksbuchstaben oder UNC-Pfad erreichbar sind.</translation>
    </message>
    <message>
        <source>&amp;Filtering</source>
        <translation>&amp;Filter</translation>
    </message>
    <message>
        <source>&amp;Rule</source>
        <translation>&amp;Regel</translation>
    </message>
    <message>
        <source>&amp;No filtering, show all</source>
        <translation>&amp;Nicht filtern, alle anzeigen</translation>
    </message>
    <message>
        <source>To&amp;day&apos;s messages only</source>
        <translation>Nur &amp;heutige Nachrichten</translation>
    </message>
    <message>
        <source>The last &amp;two days</source>
        <translation>Die letzten &amp;zwei Tage</translation>
    </message>
    <message>
        <source>Full &amp;week</source>
        <translation>Volle &amp;Woche</translation>
    </message>
    <message>
        <source>&amp;Toleration</source>
        <translation>&amp;Toleranz</translation>
    </message>
    <message>
        <source>&amp;Level</source>
        <translation>&amp;Stufe</translation>
    </message>
    <message>
        <source>&amp;Automatic (in background during refresh)</source>
        <translation>A&amp;utomatisch (im Hintergrund beim Aktualisieren)</translation>
    </message>
    <message>
        <source>Manual (by you)</source>
        <translation>Manuell (durch Sie)</translation>
    </message>
    <message>
        <source>&amp;Disabled (whitelist switched off)</source>
        <translation>&amp;Deaktiviert (Whitelist ausgeschaltet)</translation>
    </message>
    <message>
        <source>Whitelist of tolerated senders</source>
        <translation>Whitelist der tolerierten Absender</translation>
    </message>
    <message>
        <source>Select the whitelist of tolerated senders</source>
        <translation>Whitelist der tolerierten Absender auswählen</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>&amp;Einstellungen</translation>
    </message>
    <message>
        <source>Use OutlookE&amp;xpress as message viewer</source>
        <translation>OutlookE&amp;xpress zum Anzeigen von Nachrichten verwenden</translation>
    </message>
    <message>
        <source>Use this option with great care!</source>
        <translation>Verwenden Sie diese Option mit großer Vorsicht!</translation>
    </message>
    <message>
        <source>&amp;Auto Refresh / Action (in seconds)</source>
        <translation>Automatische Akt&amp;ualisierung / Aktion (in Sekunden)</translation>
    </message>
    <message>
        <source>Refresh interval in seconds</source>
        <translation>Aktualisierungsintervall in Sekunden</translation>
    </message>
    <message>
        <source>&amp;Go to end of message contents in RAW viewer window</source>
        <translation>Im Quelltext-Fenster ans Ende der Nachricht &amp;gehen</translation>
    </message>
    <message>
        <source>This option didn&apos;t work well...</source>
        <translation>Diese Option funktionierte nicht gut...</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>&amp;History</source>
        <translation>Ver&amp;lauf</translation>
    </message>
    <message>
        <source>&amp;Keep deleted messages, so that deleting can be undone</source>
        <translation>&amp;Gelöschte Nachrichten aufbewahren, damit sie zurückgeholt werden können</translation>
    </message>
    <message>
        <source>D&amp;ays to keep them (1 to 999)</source>
        <translation>Tage, die sie auf&amp;bewahrt werden (1 bis 999)</translation>
    </message>
    <message>
        <source>Days to keep deleted messages</source>
        <translation>Tage, die gelöschte Nachrichten aufbewahrt werden</translation>
    </message>
    <message>
        <source>Da&amp;ys to keep the history of actions (0 to 9999)</source>
        <translation>Tage, die &amp;der Verlauf der Aktionen aufbewahrt wird (0 bis 9999)</translation>
    </message>
    <message>
        <source>Days to keep the history of actions</source>
        <translation>Tage, die der Verlauf der Aktionen aufbewahrt wird</translation>
    </message>
    <message>
        <source>With 0 days, no history is written.</source>
        <translation>Bei 0 Tagen wird kein Verlauf geschrieben.</translation>
    </message>
    <message>
        <source>&amp;Server</source>
        <translation>&amp;Mailserver</translation>
    </message>
    <message>
        <source>The messages were &amp;blocked by</source>
        <translation>Die Nachrichten wurden &amp;blockiert von</translation>
    </message>
    <message>
        <source>D&amp;etect</source>
        <translation>Er&amp;kennen</translation>
    </message>
    <message>
        <source>Look at the newest messages of the archive</source>
        <translation>Die neuesten Nachrichten des Archivs ansehen</translation>
    </message>
    <message>
        <source>F&amp;ields...</source>
        <translation>Fel&amp;der...</translation>
    </message>
    <message>
        <source>Header fields of another server</source>
        <translation>Kopffelder eines anderen Servers</translation>
    </message>
</context>
<context>
    <name>frmOverview</name>
    <message>
        <source>Overview</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Senders often &amp;unblocked, and not tolerated yet</source>
        <translation>Oft freigegebene, noch nicht tolerierte &amp;Absender</translation>
    </message>
    <message>
        <source>&amp;Tolerate...</source>
        <translation>&amp;Tolerieren...</translation>
    </message>
    <message>
        <source>Open the whitelist for the selected senders, one after the other</source>
        <translation>Öffnet die Whitelist für die ausgewählten Absender, einen nach dem anderen</translation>
    </message>
    <message>
        <source>Senders often unblocked, and not tolerated yet</source>
        <translation>Oft freigegebene, noch nicht tolerierte Absender</translation>
    </message>
    <message>
        <source>Sender</source>
        <translation>Absender</translation>
    </message>
    <message>
        <source>Unblocked</source>
        <translation>Freigegeben</translation>
    </message>
    <message>
        <source>Last time</source>
        <translation>Zuletzt</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>Bulk mode is on: messages that have not been read yet are without sender, recipient, subject and rating here.</source>
        <translation>Der Bulk-Modus ist eingeschaltet: Noch nicht gelesene Nachrichten sind hier ohne Absender, Empfänger, Betreff und Bewertung.</translation>
    </message>
</context>
<context>
    <name>frmOwnServer</name>
    <message>
        <source>Fields of Another Server</source>
        <translation>Felder eines anderen Servers</translation>
    </message>
    <message>
        <source>Spam &amp;confidence</source>
        <translation>Spam-&amp;Bewertung</translation>
    </message>
    <message>
        <source>Name of a header field</source>
        <translation>Name eines Kopffelds</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keines</translation>
    </message>
    <message>
        <source>It &amp;is</source>
        <translation>Sie &amp;ist</translation>
    </message>
    <message>
        <source>Te&amp;xt</source>
        <translation>Te&amp;xt</translation>
    </message>
    <message>
        <source>Envelope &amp;sender</source>
        <translation>&amp;Umschlagabsender</translation>
    </message>
    <message>
        <source>Names of header fields, with commas between them</source>
        <translation>Namen von Kopffeldern, mit Kommas dazwischen</translation>
    </message>
    <message>
        <source>&amp;Recipients</source>
        <translation>&amp;Empfänger</translation>
    </message>
    <message>
        <source>&amp;Each recipient has a field of that name</source>
        <translation>&amp;Jeder Empfänger hat ein Feld dieses Namens</translation>
    </message>
    <message>
        <source>Reaso&amp;ns and others</source>
        <translation>&amp;Gründe und andere</translation>
    </message>
    <message>
        <source>&amp;Files end with</source>
        <translation>&amp;Dateien enden auf</translation>
    </message>
    <message>
        <source>The end of the names of those files that are messages</source>
        <translation>Das Ende der Namen derjenigen Dateien, die Nachrichten sind</translation>
    </message>
    <message>
        <source>anything</source>
        <translation>beliebig</translation>
    </message>
    <message>
        <source>Files may be &amp;packed (gzip)</source>
        <translation>Dateien können ge&amp;packt sein (gzip)</translation>
    </message>
    <message>
        <source>The archive is a &amp;Maildir (with the folders new and cur)</source>
        <translation>Das Archiv ist ein &amp;Maildir (mit den Ordnern new und cur)</translation>
    </message>
    <message>
        <source>In the newest message</source>
        <translation>In der neuesten Nachricht</translation>
    </message>
    <message>
        <source>&amp;Try</source>
        <translation>&amp;Ausprobieren</translation>
    </message>
    <message>
        <source>Look for these fields in the newest message of the archive</source>
        <translation>Diese Felder in der neuesten Nachricht des Archivs suchen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
</context>
<context>
    <name>frmTolerate</name>
    <message>
        <source>Tolerate</source>
        <translation>Tolerieren</translation>
    </message>
    <message>
        <source>Tolerated senders</source>
        <translation>Tolerierte Absender</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>tolerated sender</source>
        <translation>tolerierter Absender</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Remove A&amp;ll</source>
        <translation>&amp;Alle entfernen</translation>
    </message>
    <message>
        <source>Clear all tolerated senders</source>
        <translation>Alle tolerierten Absender entfernen</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>H&amp;ilfe</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Toleration not yet implemented for now</source>
        <translation>Tolerieren ist vorerst noch nicht möglich</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>frmView</name>
    <message>
        <source>Raw message contents</source>
        <translation>Quelltext der Nachricht</translation>
    </message>
    <message>
        <source>Readable text of the message</source>
        <translation>Lesbarer Text der Nachricht</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
</context>
<context>
    <name>quellbox</name>
    <message>
        <source>The file is read-only.</source>
        <translation>Die Datei ist schreibgeschützt.</translation>
    </message>
    <message>
        <source>The file was changed while it was being moved.</source>
        <translation>Die Datei wurde beim Verschieben verändert.</translation>
    </message>
    <message>
        <source>The settings cannot be written. Make sure that you may write this file and its folder, and that the disk is not full.</source>
        <translation>Die Einstellungen können nicht gespeichert werden. Stellen Sie sicher, dass Sie in diese Datei und ihr Verzeichnis schreiben dürfen und dass der Datenträger nicht voll ist.</translation>
    </message>
    <message>
        <source>The file cannot be read</source>
        <translation>Die Datei kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>The file is empty</source>
        <translation>Die Datei ist leer</translation>
    </message>
    <message>
        <source>Not a mail message: no header field found</source>
        <translation>Keine E-Mail-Nachricht: kein Kopffeld gefunden</translation>
    </message>
    <message>
        <source>The header of the message is too large</source>
        <translation>Der Kopf der Nachricht ist zu groß</translation>
    </message>
    <message>
        <source>The message has too many header fields</source>
        <translation>Die Nachricht hat zu viele Kopffelder</translation>
    </message>
    <message>
        <source>The message has too many parts</source>
        <translation>Die Nachricht hat zu viele Teile</translation>
    </message>
    <message>
        <source>The parts of the message are nested too deeply</source>
        <translation>Die Teile der Nachricht sind zu tief verschachtelt</translation>
    </message>
    <message>
        <source> (just today)</source>
        <translation> (nur heute)</translation>
    </message>
    <message>
        <source> (in two days)</source>
        <translation> (in zwei Tagen)</translation>
    </message>
    <message>
        <source> (one week)</source>
        <translation> (eine Woche)</translation>
    </message>
    <message>
        <source>The setting &quot;%1&quot; is stored as &quot;%2&quot; and cannot be used; its default &quot;%3&quot; is used instead. %4</source>
        <translation>Die Einstellung „%1“ ist als „%2“ gespeichert und nicht verwendbar; stattdessen gilt die Vorgabe „%3“. %4</translation>
    </message>
    <message>
        <source>The number &quot;%1&quot; is too large or too small. Enter a number from %2 to %3.</source>
        <translation>Die Zahl „%1“ ist zu groß oder zu klein. Geben Sie eine Zahl von %2 bis %3 ein.</translation>
    </message>
    <message>
        <source>The text &quot;%1&quot; is neither True nor False nor a number. Enter True or False.</source>
        <translation>Der Text „%1“ ist weder True noch False noch eine Zahl. Geben Sie True oder False ein.</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 GB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>%1 KB</source>
        <translation>%1 KB</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Byte</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>To</source>
        <translation>An</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>Subject</source>
        <translation>Betreff</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Bytes</source>
        <translation>Byte</translation>
    </message>
    <message>
        <source>SCL%</source>
        <translation>SCL%</translation>
    </message>
    <message>
        <source>%1, unread</source>
        <translation>%1, ungelesen</translation>
    </message>
    <message>
        <source>Overflow: the selected messages hold 2 GiB or more. Select fewer messages.</source>
        <translation>Überlauf: Die ausgewählten Nachrichten umfassen 2 GiB oder mehr. Wählen Sie weniger Nachrichten aus.</translation>
    </message>
    <message>
        <source>Overflow: at most 32,767 messages can be selected. Select fewer messages.</source>
        <translation>Überlauf: Es können höchstens 32.767 Nachrichten ausgewählt werden. Wählen Sie weniger Nachrichten aus.</translation>
    </message>
    <message>
        <source>Size of selected messages</source>
        <translation>Größe der ausgewählten Nachricht</translation>
    </message>
    <message>
        <source>Total size of selected messages</source>
        <translation>Gesamtgröße der ausgewählten Nachrichten</translation>
    </message>
    <message>
        <source>Tolerate entire domain</source>
        <translation>Gesamte Domain tolerieren</translation>
    </message>
    <message>
        <source>Individual addresses for users at </source>
        <translation>Einzelne Adressen von Benutzern bei </translation>
    </message>
    <message>
        <source>will be removed from the list of tolerated users.</source>
        <translation>werden aus der Liste der tolerierten Benutzer entfernt.</translation>
    </message>
    <message>
        <source>Every sender from this domain is going to be tolerated from now on.</source>
        <translation>Ab jetzt wird jeder Absender dieser Domain toleriert.</translation>
    </message>
    <message>
        <source>Only one directory can be opened at a time.</source>
        <translation>Es kann immer nur ein Verzeichnis geöffnet werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no directory that can be opened.</source>
        <translation>„%1“ ist kein Verzeichnis, das geöffnet werden kann.</translation>
    </message>
    <message>
        <source>Archive %1 not found</source>
        <translation>Archiv %1 nicht gefunden</translation>
    </message>
    <message>
        <source>Archive cannot be read: %1</source>
        <translation>Archiv kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>Overflow: the archive %1 holds %2 files, and at most 32,766 can be listed. Move or delete some of them, then refresh.</source>
        <translation>Überlauf: Das Archiv %1 enthält %2 Dateien, aufgelistet werden können höchstens 32.766. Verschieben oder löschen Sie einige davon und aktualisieren Sie dann die Liste.</translation>
    </message>
    <message>
        <source>Look through the archive of a mail server&apos;s spam filter, and deliver what is no spam.</source>
        <translation>Das Archiv des Spam-Filters eines Mailservers durchsehen und zustellen, was kein Spam ist.</translation>
    </message>
    <message>
        <source>Print the list after the first refresh, and quit.</source>
        <translation>Nach dem ersten Aktualisieren die Liste ausgeben und beenden.</translation>
    </message>
    <message>
        <source>Save a picture of the window after the first refresh, and quit.</source>
        <translation>Nach dem ersten Aktualisieren ein Bild des Fensters speichern und beenden.</translation>
    </message>
    <message>
        <source>The archive to show in this session, instead of the one in the settings, which stay as they are.</source>
        <translation>Das Archiv, das in dieser Sitzung anstelle des eingestellten angezeigt wird. Die Einstellungen bleiben unverändert.</translation>
    </message>
    <message>
        <source>[directory]</source>
        <translation>[Verzeichnis]</translation>
    </message>
    <message numerus="yes">
        <source>%n messages</source>
        <translation>
            <numerusform>%n Nachricht</numerusform>
            <numerusform>%n Nachrichten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n selected</source>
        <translation>
            <numerusform>%n ausgewählt</numerusform>
            <numerusform>%n ausgewählt</numerusform>
        </translation>
    </message>
    <message>
        <source>The share is not mounted on this computer.</source>
        <translation>Die Freigabe ist auf diesem Computer nicht eingebunden.</translation>
    </message>
    <message>
        <source>%1 contains all archived messages put here by the Exchange Intelligent Message Filter.</source>
        <translation>%1 enthält alle archivierten Nachrichten, die der Exchange Intelligent Message Filter dort abgelegt hat.</translation>
    </message>
    <message>
        <source>This cleansing operation helps you to quickly, and permanently, remove them.</source>
        <translation>Mit dieser Bereinigung entfernen Sie sie schnell und endgültig.</translation>
    </message>
    <message>
        <source>, except those that arrived today.</source>
        <translation>, außer denen, die heute eingegangen sind.</translation>
    </message>
    <message>
        <source>, except those that arrived today and yesterday.</source>
        <translation>, außer denen, die heute und gestern eingegangen sind.</translation>
    </message>
    <message>
        <source>, except those that arrived during the last seven days.</source>
        <translation>, außer denen, die in den letzten sieben Tagen eingegangen sind.</translation>
    </message>
    <message>
        <source>Clean up %1</source>
        <translation>%1 bereinigen</translation>
    </message>
    <message>
        <source>Press OK to remove them all permanently from your system</source>
        <translation>Klicken Sie auf OK, um alle endgültig von Ihrem System zu entfernen</translation>
    </message>
    <message>
        <source>&apos;%1&apos; not found in header field %2</source>
        <translation>„%1“ im Kopffeld %2 nicht gefunden</translation>
    </message>
    <message>
        <source>This is no full path.</source>
        <translation>Dies ist kein vollständiger Pfad.</translation>
    </message>
    <message>
        <source>OK to send test message to postmaster?</source>
        <translation>Testnachricht an den Postmaster senden?</translation>
    </message>
    <message>
        <source>This will verify the pickup directory setup.</source>
        <translation>Damit wird die Einrichtung des Pickup-Verzeichnisses überprüft.</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>Version: </translation>
    </message>
    <message>
        <source>Build: </source>
        <translation>Build: </translation>
    </message>
    <message>
        <source>SocketTools: </source>
        <translation>SocketTools: </translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>Verzeichnisse</translation>
    </message>
    <message>
        <source>Program: </source>
        <translation>Programm: </translation>
    </message>
    <message>
        <source>Archive: </source>
        <translation>Archiv: </translation>
    </message>
    <message>
        <source>Pickup: </source>
        <translation>Pickup: </translation>
    </message>
    <message>
        <source>The settings cannot be written. Make sure that you may change this key of the registry. The system says: %1</source>
        <translation>Die Einstellungen können nicht gespeichert werden. Stellen Sie sicher, dass Sie diesen Schlüssel der Registrierung ändern dürfen. Das System meldet: %1</translation>
    </message>
    <message>
        <source>Looks through the archive of a mail server&apos;s spam filter, and delivers what is no spam.</source>
        <translation>Sieht das Archiv des Spamfilters eines Mailservers durch und stellt zu, was kein Spam ist.</translation>
    </message>
    <message>
        <source>Spam archive manager</source>
        <translation>Verwaltung von Spam-Archiven</translation>
    </message>
    <message>
        <source>With Qt, GLib and GMime, which are under the GNU LGPL.</source>
        <translation>Mit Qt, GLib und GMime, die unter der GNU LGPL stehen.</translation>
    </message>
    <message>
        <source>The file is gone.</source>
        <translation>Die Datei ist nicht mehr da.</translation>
    </message>
    <message>
        <source>Some lines of the settings cannot be understood and are left out. They are in the file %1, which the next settings that are stored will replace.</source>
        <translation>Einige Zeilen der Einstellungen sind nicht zu verstehen und werden ausgelassen. Sie stehen in der Datei %1, die beim nächsten Speichern von Einstellungen ersetzt wird.</translation>
    </message>
    <message>
        <source>Some lines of the settings cannot be understood and are left out. The file with all its lines is kept as %1.</source>
        <translation>Einige Zeilen der Einstellungen sind nicht zu verstehen und werden ausgelassen. Die Datei mit allen ihren Zeilen ist unter dem Namen %1 aufbewahrt.</translation>
    </message>
    <message>
        <source>The window cannot be shown, because there is no display or it does not answer. The option --print-list works without one.</source>
        <translation>Das Fenster kann nicht angezeigt werden, weil es keine Anzeige gibt oder sie nicht antwortet. Die Option --print-list kommt ohne Anzeige aus.</translation>
    </message>
    <message>
        <source>The file or its folder is gone: %1</source>
        <translation>Die Datei oder ihr Ordner ist nicht mehr da: %1</translation>
    </message>
    <message>
        <source>Nothing, if another program has taken the message.</source>
        <translation>Nichts, falls ein anderes Programm die Nachricht geholt hat.</translation>
    </message>
    <message>
        <source>The pickup directory holds a message of this name already.</source>
        <translation>Im Pickup-Verzeichnis liegt schon eine Nachricht dieses Namens.</translation>
    </message>
    <message>
        <source>Wait until the mail server has taken that one, then try again. If it stays there, the server does not deliver.</source>
        <translation>Warten Sie, bis der Mailserver jene geholt hat, und versuchen Sie es dann wieder. Bleibt sie liegen, so stellt der Server nicht zu.</translation>
    </message>
    <message>
        <source>No right to change or delete in %1</source>
        <translation>Kein Recht, etwas zu ändern oder zu löschen in %1</translation>
    </message>
    <message>
        <source>Ask whoever manages the server for that right.</source>
        <translation>Bitten Sie den Verwalter des Servers um dieses Recht.</translation>
    </message>
    <message>
        <source>There is no room left in %1</source>
        <translation>Kein Platz mehr in %1</translation>
    </message>
    <message>
        <source>Make room there, then try again.</source>
        <translation>Schaffen Sie dort Platz, und versuchen Sie es dann wieder.</translation>
    </message>
    <message>
        <source>Another program uses the file.</source>
        <translation>Ein anderes Programm benutzt die Datei.</translation>
    </message>
    <message>
        <source>Try again later.</source>
        <translation>Versuchen Sie es später wieder.</translation>
    </message>
    <message>
        <source>The server has not answered since %1: %2</source>
        <translation>Der Server antwortet seit %1 nicht: %2</translation>
    </message>
    <message>
        <source>Try again when the server can be reached.</source>
        <translation>Versuchen Sie es wieder, wenn der Server zu erreichen ist.</translation>
    </message>
    <message>
        <source>The server of the archive does not answer: %1</source>
        <translation>Der Server des Archivs antwortet nicht: %1</translation>
    </message>
    <message>
        <source>The share of the archive is not mounted any more: %1</source>
        <translation>Die Freigabe des Archivs ist nicht mehr eingehängt: %1</translation>
    </message>
    <message>
        <source>A file or a link has the name of the folder.</source>
        <translation>Eine Datei oder ein Link hat den Namen des Ordners.</translation>
    </message>
    <message>
        <source>Nothing was deleted: the folder for deleted messages cannot be made in %1

%2</source>
        <translation>Nichts wurde gelöscht: Der Ordner für gelöschte Nachrichten kann nicht angelegt werden in %1

%2</translation>
    </message>
    <message>
        <source>Shares opened in the file manager</source>
        <translation>In der Dateiverwaltung geöffnete Freigaben</translation>
    </message>
    <message>
        <source>Unblock</source>
        <translation>Freigeben</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Tolerate</source>
        <translation>Tolerieren</translation>
    </message>
    <message>
        <source>Automatic toleration</source>
        <translation>Automatische Tolerierung</translation>
    </message>
    <message>
        <source>Cleansing</source>
        <translation>Bereinigung</translation>
    </message>
    <message>
        <source>Added to whitelist</source>
        <translation>In Whitelist aufgenommen</translation>
    </message>
    <message>
        <source>Removed from whitelist</source>
        <translation>Aus Whitelist entfernt</translation>
    </message>
    <message>
        <source>Pickup test</source>
        <translation>Pickup-Test</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig machen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Erledigt</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>Undone</source>
        <translation>Rückgängig gemacht</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Aktion</translation>
    </message>
    <message>
        <source>Sender</source>
        <translation>Absender</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>Whitelist entry</source>
        <translation>Whitelist-Eintrag</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Archive</source>
        <translation>Archiv</translation>
    </message>
    <message>
        <source>Pickup directory</source>
        <translation>Pickup-Verzeichnis</translation>
    </message>
    <message>
        <source>Kept in</source>
        <translation>Aufbewahrt in</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Konto</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>A newer version of the program has made it.</source>
        <translation>Eine neuere Version des Programms hat ihn angelegt.</translation>
    </message>
    <message>
        <source>The program ended in the middle. The message is in both folders.</source>
        <translation>Das Programm endete mittendrin. Die Nachricht liegt in beiden Ordnern.</translation>
    </message>
    <message>
        <source>The program ended before it had dealt with the message.</source>
        <translation>Das Programm endete, bevor es die Nachricht bearbeitet hatte.</translation>
    </message>
    <message>
        <source>What is done cannot be written into the history at the moment, because another program keeps it locked. It is tried again while this program runs. %1: %2</source>
        <translation>Was getan wird, kann im Moment nicht in den Verlauf geschrieben werden, weil ein anderes Programm ihn gesperrt hält. Solange dieses Programm läuft, wird es wieder versucht. %1: %2</translation>
    </message>
    <message>
        <source>What is done cannot be written into the history at the moment, because the disk is full. It is tried again while this program runs. %1: %2</source>
        <translation>Was getan wird, kann im Moment nicht in den Verlauf geschrieben werden, weil der Datenträger voll ist. Solange dieses Programm läuft, wird es wieder versucht. %1: %2</translation>
    </message>
    <message>
        <source>The history %1 is damaged. It was put aside as %2, and a new one has been begun.</source>
        <translation>Der Verlauf %1 ist beschädigt. Er wurde als %2 beiseite gelegt und ein neuer begonnen.</translation>
    </message>
    <message>
        <source>The history cannot be used, and is left alone. What is done now can be looked up until the program ends. %1: %2</source>
        <translation>Der Verlauf kann nicht benutzt werden und bleibt unberührt. Was jetzt getan wird, kann bis zum Ende des Programms nachgesehen werden. %1: %2</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Envelope sender</source>
        <translation>Umschlagabsender</translation>
    </message>
    <message>
        <source>There is no such folder.</source>
        <translation>Diesen Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>There is a file of this name already.</source>
        <translation>Es gibt schon eine Datei dieses Namens.</translation>
    </message>
    <message>
        <source>The name has to end with .csv or .jsonl.</source>
        <translation>Der Name muss mit .csv oder .jsonl enden.</translation>
    </message>
    <message>
        <source>Nothing would be removed.</source>
        <translation>Nichts würde entfernt.</translation>
    </message>
    <message>
        <source>One message (%1) of %2 would be removed.</source>
        <translation>Eine Nachricht (%1) vom %2 würde entfernt.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln messages (%1) of %2 would be removed.</source>
        <translation>
            <numerusform>%Ln Nachricht (%1) vom %2 würde entfernt.</numerusform>
            <numerusform>%Ln Nachrichten (%1) vom %2 würden entfernt.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln messages (%1) from %2 to %3 would be removed.</source>
        <translation>
            <numerusform>%Ln Nachricht (%1) vom %2 bis %3 würde entfernt.</numerusform>
            <numerusform>%Ln Nachrichten (%1) vom %2 bis %3 würden entfernt.</numerusform>
        </translation>
    </message>
    <message>
        <source>There is a file %1 already. Replace it?</source>
        <translation>Die Datei %1 gibt es schon. Soll sie ersetzt werden?</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>It is damaged, and cannot be put aside.</source>
        <translation>Er ist beschädigt und kann nicht beiseite gelegt werden.</translation>
    </message>
    <message>
        <source>What is done cannot be written into the history at the moment. It is tried again while this program runs. %1: %2</source>
        <translation>Was getan wird, kann im Moment nicht in den Verlauf geschrieben werden. Solange dieses Programm läuft, wird es wieder versucht. %1: %2</translation>
    </message>
    <message>
        <source>The password store is locked.</source>
        <translation>Der Passwortspeicher ist gesperrt.</translation>
    </message>
    <message>
        <source>The password store was not opened, because that was refused.</source>
        <translation>Der Passwortspeicher wurde nicht geöffnet, weil das abgelehnt wurde.</translation>
    </message>
    <message>
        <source>There is no password store. GNOME Keyring and KWallet are programs for that. The system says: %1</source>
        <translation>Es gibt keinen Passwortspeicher. GNOME Keyring und KWallet sind Programme dafür. Das System meldet: %1</translation>
    </message>
    <message>
        <source>The password store cannot be used: %1</source>
        <translation>Der Passwortspeicher kann nicht benutzt werden: %1</translation>
    </message>
    <message>
        <source>The packed file is damaged</source>
        <translation>Die gepackte Datei ist beschädigt</translation>
    </message>
    <message>
        <source>Unpacked, the message would be too large</source>
        <translation>Entpackt wäre die Nachricht zu groß</translation>
    </message>
    <message>
        <source>The message is packed, and the pickup directory takes only .EML files.</source>
        <translation>Die Nachricht ist gepackt, und das Pickup-Verzeichnis nimmt nur .EML-Dateien an.</translation>
    </message>
    <message>
        <source>Intelligent Message Filter</source>
        <translation>Intelligent Message Filter</translation>
    </message>
    <message>
        <source>Exchange Server</source>
        <translation>Exchange Server</translation>
    </message>
    <message>
        <source>amavis</source>
        <translation>amavis</translation>
    </message>
    <message>
        <source>rspamd</source>
        <translation>rspamd</translation>
    </message>
    <message>
        <source>SpamAssassin</source>
        <translation>SpamAssassin</translation>
    </message>
    <message>
        <source>No server has that name.</source>
        <translation>Kein Server heißt so.</translation>
    </message>
    <message>
        <source>There is no such way of delivery.</source>
        <translation>Diesen Weg der Zustellung gibt es nicht.</translation>
    </message>
    <message>
        <source>A port is a number from 1 to 65535.</source>
        <translation>Ein Port ist eine Zahl von 1 bis 65535.</translation>
    </message>
    <message>
        <source>There is no such way of securing a connection.</source>
        <translation>So kann eine Verbindung nicht gesichert werden.</translation>
    </message>
    <message>
        <source>It was not delivered, and is still in the archive.</source>
        <translation>Sie wurde nicht zugestellt und ist noch im Archiv.</translation>
    </message>
    <message>
        <source>Ask the recipient, or look into the mail server&apos;s log, before it is sent again: it is in the archive, and is not sent by itself.</source>
        <translation>Fragen Sie den Empfänger oder sehen Sie im Protokoll des Mailservers nach, bevor sie noch einmal gesendet wird: Sie ist im Archiv und wird nicht von selbst gesendet.</translation>
    </message>
    <message>
        <source>Let the server that has packed it release the message.</source>
        <translation>Lassen Sie den Server, der sie gepackt hat, die Nachricht freigeben.</translation>
    </message>
    <message>
        <source>The command has a quotation mark without its end.</source>
        <translation>Im Befehl fehlt das Ende eines Anführungszeichens.</translation>
    </message>
    <message>
        <source>The command names no program.</source>
        <translation>Der Befehl nennt kein Programm.</translation>
    </message>
    <message>
        <source>The command does not say where the recipients go: %1 is missing.</source>
        <translation>Der Befehl sagt nicht, wo die Empfänger stehen: %1 fehlt.</translation>
    </message>
    <message>
        <source>%1 has to be an argument of its own.</source>
        <translation>%1 muss ein eigenes Argument sein.</translation>
    </message>
    <message>
        <source>The command takes one recipient only, unless it has %1.</source>
        <translation>Der Befehl nimmt nur einen Empfänger, es sei denn, er enthält %1.</translation>
    </message>
    <message>
        <source>The program would take an address for an option, as it begins with a hyphen and does not stand behind --.</source>
        <translation>Das Programm hielte eine Adresse für eine Option, da sie mit einem Bindestrich beginnt und nicht hinter -- steht.</translation>
    </message>
    <message>
        <source>%1 was interrupted in the middle: the message may have been delivered.</source>
        <translation>%1 wurde mittendrin unterbrochen: Die Nachricht kann zugestellt worden sein.</translation>
    </message>
    <message>
        <source>%1 has refused the message (code %2).</source>
        <translation>%1 hat die Nachricht abgelehnt (Code %2).</translation>
    </message>
    <message>
        <source>The program would take an address for several ones.</source>
        <translation>Das Programm hielte eine Adresse für mehrere.</translation>
    </message>
    <message>
        <source>The message was not sent, as the program was told to stop.</source>
        <translation>Die Nachricht wurde nicht gesendet, da das Programm anhalten sollte.</translation>
    </message>
    <message>
        <source>There is no program named %1.</source>
        <translation>Es gibt kein Programm namens %1.</translation>
    </message>
    <message>
        <source>%1 cannot be started: %2</source>
        <translation>%1 kann nicht gestartet werden: %2</translation>
    </message>
    <message>
        <source>The message has no recipient.</source>
        <translation>Die Nachricht hat keinen Empfänger.</translation>
    </message>
    <message>
        <source>This is no address that can be sent to a server: %1</source>
        <translation>Das ist keine Adresse, die an einen Server gesendet werden kann: %1</translation>
    </message>
    <message>
        <source>The connection to %1 ended before the message was sent.</source>
        <translation>Die Verbindung zu %1 endete, bevor die Nachricht gesendet war.</translation>
    </message>
    <message>
        <source>The server %1 did not answer in time.</source>
        <translation>Der Server %1 hat nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>What the server %1 answered cannot be understood.</source>
        <translation>Was der Server %1 geantwortet hat, ist nicht zu verstehen.</translation>
    </message>
    <message>
        <source>The server %1 cannot be used: %2</source>
        <translation>Der Server %1 kann nicht benutzt werden: %2</translation>
    </message>
    <message>
        <source>The server %1 does not let anybody log in.</source>
        <translation>Am Server %1 kann sich niemand anmelden.</translation>
    </message>
    <message>
        <source>The password is not sent, as the connection to the server is not encrypted.</source>
        <translation>Das Kennwort wird nicht gesendet, da die Verbindung zum Server nicht verschlüsselt ist.</translation>
    </message>
    <message>
        <source>This is no server that can be connected to: %1</source>
        <translation>Das ist kein Server, zu dem eine Verbindung möglich ist: %1</translation>
    </message>
    <message>
        <source>The connection ended before the server had answered: the message may have been delivered.</source>
        <translation>Die Verbindung endete, bevor der Server geantwortet hatte: Die Nachricht kann zugestellt worden sein.</translation>
    </message>
    <message>
        <source>The server takes no addresses with letters outside ASCII.</source>
        <translation>Der Server nimmt keine Adressen mit Buchstaben außerhalb von ASCII.</translation>
    </message>
    <message>
        <source>The message has 8-bit characters, which the server does not take. Converting it would make its signatures invalid.</source>
        <translation>Die Nachricht enthält 8-Bit-Zeichen, die der Server nicht annimmt. Eine Umwandlung machte ihre Signaturen ungültig.</translation>
    </message>
    <message>
        <source>The message has %1; the server takes at most %2.</source>
        <translation>Die Nachricht hat %1; der Server nimmt höchstens %2.</translation>
    </message>
    <message>
        <source>The server %1 gave an unexpected answer: %2</source>
        <translation>Der Server %1 gab eine unerwartete Antwort: %2</translation>
    </message>
    <message>
        <source>It was not sent any more.</source>
        <translation>Sie wurde nicht mehr gesendet.</translation>
    </message>
    <message>
        <source>The message does not say to whom it was sent: it has none of the fields in which the chosen server writes that.</source>
        <translation>Die Nachricht sagt nicht, an wen sie gesendet wurde: Sie hat keines der Felder, in die der gewählte Server das schreibt.</translation>
    </message>
    <message>
        <source>It was delivered, but its file cannot be removed: %1</source>
        <translation>Sie wurde zugestellt, aber ihre Datei lässt sich nicht entfernen: %1</translation>
    </message>
    <message>
        <source>Answer of the mail server</source>
        <translation>Antwort des Mailservers</translation>
    </message>
    <message>
        <source>Delivered by</source>
        <translation>Zugestellt über</translation>
    </message>
    <message>
        <source>The program ended while the message was being sent. It may have been delivered.</source>
        <translation>Das Programm endete, während die Nachricht gesendet wurde. Sie kann zugestellt worden sein.</translation>
    </message>
    <message>
        <source>This will verify the delivery by %1.</source>
        <translation>Damit wird die Zustellung über %1 geprüft.</translation>
    </message>
    <message numerus="yes">
        <source>Nobody has taken the test message for %n seconds: no mail server looks into this directory, or it refuses the message.</source>
        <translation>
            <numerusform>Seit %n Sekunde hat niemand die Testnachricht abgeholt: Kein Mailserver sieht in dieses Verzeichnis, oder er weist die Nachricht ab.</numerusform>
            <numerusform>Seit %n Sekunden hat niemand die Testnachricht abgeholt: Kein Mailserver sieht in dieses Verzeichnis, oder er weist die Nachricht ab.</numerusform>
        </translation>
    </message>
    <message>
        <source>A batch file cannot be the command, as the shell would run it.</source>
        <translation>Eine Stapeldatei kann nicht der Befehl sein, da die Shell sie ausführen würde.</translation>
    </message>
    <message>
        <source>another server</source>
        <translation>ein anderer Server</translation>
    </message>
    <message>
        <source>Those are not names of header fields that tell the envelope of a message.</source>
        <translation>Das sind keine Namen von Kopffeldern, die den Umschlag einer Nachricht nennen.</translation>
    </message>
    <message>
        <source>The name of a header field is ASCII without blanks and colons.</source>
        <translation>Der Name eines Kopffelds ist ASCII ohne Leerzeichen und Doppelpunkte.</translation>
    </message>
    <message>
        <source>A spam confidence has no such form.</source>
        <translation>Eine solche Form hat eine Spam-Bewertung nicht.</translation>
    </message>
    <message>
        <source>Only ASCII can be found before a number.</source>
        <translation>Nur ASCII kann vor einer Zahl gefunden werden.</translation>
    </message>
    <message>
        <source>The name of a file has no such characters.</source>
        <translation>Der Name einer Datei hat keine solchen Zeichen.</translation>
    </message>
    <message>
        <source>The message begins with a field that the mail server would take for its envelope.</source>
        <translation>Die Nachricht beginnt mit einem Feld, das der Mailserver für ihren Umschlag halten würde.</translation>
    </message>
    <message>
        <source>No replay directory is chosen.</source>
        <translation>Es ist kein Replay-Verzeichnis ausgewählt.</translation>
    </message>
    <message>
        <source>Written into the replay directory as %1.</source>
        <translation>In das Replay-Verzeichnis geschrieben, als %1.</translation>
    </message>
    <message>
        <source>Nobody knows whether the mail server has it: %1</source>
        <translation>Niemand weiß, ob der Mailserver sie hat: %1</translation>
    </message>
    <message>
        <source>It has none of the folders in which the chosen server keeps messages: %1</source>
        <translation>Es hat keinen der Ordner, in denen der ausgewählte Server Nachrichten aufbewahrt: %1</translation>
    </message>
    <message>
        <source>Maildir</source>
        <translation>Maildir</translation>
    </message>
    <message>
        <source>The file is gone, or another program has renamed it. Refresh the list.</source>
        <translation>Die Datei ist weg, oder ein anderes Programm hat sie umbenannt. Aktualisieren Sie die Liste.</translation>
    </message>
    <message>
        <source>No password for the mail server is kept. Enter it in the options, on the page &quot;Server&quot;.</source>
        <translation>Für den Mailserver ist kein Passwort aufbewahrt. Geben Sie es in den Optionen auf der Seite „Mailserver“ ein.</translation>
    </message>
    <message>
        <source>The archive holds a message of this name already.</source>
        <translation>Im Archiv liegt schon eine Nachricht dieses Namens.</translation>
    </message>
    <message>
        <source>The mail server has taken the message out of the pickup directory.</source>
        <translation>Der Mailserver hat die Nachricht aus dem Pickup-Verzeichnis geholt.</translation>
    </message>
    <message>
        <source>The message is not kept any more.</source>
        <translation>Die Nachricht wird nicht mehr aufbewahrt.</translation>
    </message>
    <message>
        <source>There is no such message.</source>
        <translation>Diese Nachricht gibt es nicht.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no name of a message.</source>
        <translation>&quot;%1&quot; ist kein Name einer Nachricht.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no FIELD=TEXT; the fields are %2.</source>
        <translation>&quot;%1&quot; ist kein FELD=TEXT; die Felder sind %2.</translation>
    </message>
    <message>
        <source>--%1: &quot;%2&quot; is no number.</source>
        <translation>--%1: &quot;%2&quot; ist keine Zahl.</translation>
    </message>
    <message>
        <source>Only messages of that many calendar days, today being the first; 0 for all.</source>
        <translation>Nur Nachrichten so vieler Kalendertage, von denen heute der erste ist; 0 für alle.</translation>
    </message>
    <message>
        <source>Only messages with that text in a field: %1. Upper and lower case are the same. May be given several times; then all have to match.</source>
        <translation>Nur Nachrichten mit diesem Text in einem Feld: %1. Groß- und Kleinschreibung ist gleich. Mehrmals möglich; dann muss alles zutreffen.</translation>
    </message>
    <message>
        <source>Only messages with at least that spam confidence.</source>
        <translation>Nur Nachrichten, deren Spam-Bewertung mindestens so hoch ist.</translation>
    </message>
    <message>
        <source>Only messages with at most that spam confidence.</source>
        <translation>Nur Nachrichten, deren Spam-Bewertung höchstens so hoch ist.</translation>
    </message>
    <message>
        <source>Only messages whose envelope sender is on the whitelist.</source>
        <translation>Nur Nachrichten, deren Absender im Umschlag auf der Whitelist steht.</translation>
    </message>
    <message>
        <source>--%1: &quot;%2&quot; is no whole number from %3 to %4.</source>
        <translation>--%1: &quot;%2&quot; ist keine ganze Zahl von %3 bis %4.</translation>
    </message>
    <message>
        <source>An argument is missing.</source>
        <translation>Ein Argument fehlt.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is one argument too many.</source>
        <translation>&quot;%1&quot; ist ein Argument zu viel.</translation>
    </message>
    <message>
        <source>Keep the messages of that many calendar days, today being the first; 0 keeps none.</source>
        <translation>Die Nachrichten so vieler Kalendertage behalten, von denen heute der erste ist; 0 behält keine.</translation>
    </message>
    <message>
        <source>--keep-days is missing: how many days to keep.</source>
        <translation>--keep-days fehlt: wie viele Tage behalten werden.</translation>
    </message>
    <message>
        <source>Prints the messages of the archive.</source>
        <translation>Gibt die Nachrichten des Archivs aus.</translation>
    </message>
    <message>
        <source>Prints the header and the text of a message.</source>
        <translation>Gibt Kopf und Text einer Nachricht aus.</translation>
    </message>
    <message>
        <source>Lets messages go to those to whom they were written.</source>
        <translation>Lässt Nachrichten zu denen, an die sie geschrieben sind.</translation>
    </message>
    <message>
        <source>Deletes messages.</source>
        <translation>Löscht Nachrichten.</translation>
    </message>
    <message>
        <source>Keeps the whitelist of tolerated senders.</source>
        <translation>Führt die Whitelist der tolerierten Absender.</translation>
    </message>
    <message>
        <source>Unblocks the messages of tolerated senders, as an automatic refresh does.</source>
        <translation>Gibt die Nachrichten tolerierter Absender frei, wie es eine automatische Aktualisierung tut.</translation>
    </message>
    <message>
        <source>Deletes what is older than some days.</source>
        <translation>Löscht, was älter ist als einige Tage.</translation>
    </message>
    <message>
        <source>Prints what was done, the newest first.</source>
        <translation>Gibt aus, was getan wurde, das Neueste zuerst.</translation>
    </message>
    <message>
        <source>Takes back the latest action, or the one with that number in the history.</source>
        <translation>Nimmt die letzte Aktion zurück, oder die mit dieser Nummer im Verlauf.</translation>
    </message>
    <message>
        <source>Sends a test message to the postmaster.</source>
        <translation>Sendet eine Testnachricht an den Postmaster.</translation>
    </message>
    <message>
        <source>Prints a line for each new message, until it is interrupted.</source>
        <translation>Gibt für jede neue Nachricht eine Zeile aus, bis es unterbrochen wird.</translation>
    </message>
    <message>
        <source>Exit codes: 0 done, 1 some messages failed, 2 wrong usage, 3 the archive or the pickup directory cannot be reached, 4 interrupted.</source>
        <translation>Ende mit: 0 getan, 1 manche Nachrichten misslangen, 2 falscher Aufruf, 3 Archiv oder Pickup-Verzeichnis ist nicht zu erreichen, 4 unterbrochen.</translation>
    </message>
    <message>
        <source>The archive, instead of the one in the settings.</source>
        <translation>Das Archiv, anstelle dessen in den Einstellungen.</translation>
    </message>
    <message>
        <source>The pickup directory, instead of the one in the settings.</source>
        <translation>Das Pickup-Verzeichnis, anstelle dessen in den Einstellungen.</translation>
    </message>
    <message>
        <source>The program whose settings and history are used (%1).</source>
        <translation>Das Programm, dessen Einstellungen und Verlauf benutzt werden (%1).</translation>
    </message>
    <message>
        <source>Print this help.</source>
        <translation>Diese Hilfe ausgeben.</translation>
    </message>
    <message>
        <source>Usage: %1</source>
        <translation>Aufruf: %1</translation>
    </message>
    <message>
        <source>Looks through the archive of a mail server&apos;s spam filter, and delivers what is no spam, without a window.</source>
        <translation>Sieht das Archiv des Spamfilters eines Mailservers durch und stellt zu, was kein Spam ist, ohne ein Fenster.</translation>
    </message>
    <message>
        <source>quellboxctl COMMAND --help tells more of a command, quellboxctl --version the version.</source>
        <translation>quellboxctl COMMAND --help sagt mehr über einen Befehl, quellboxctl --version die Version.</translation>
    </message>
    <message>
        <source>Example: %1</source>
        <translation>Beispiel: %1</translation>
    </message>
    <message>
        <source>Print the messages, and do nothing with them.</source>
        <translation>Die Nachrichten ausgeben und nichts mit ihnen tun.</translation>
    </message>
    <message>
        <source>The whitelist is disabled in the options, so no message is delivered by it.</source>
        <translation>Die Whitelist ist in den Optionen ausgeschaltet, deshalb wird keine Nachricht ihretwegen zugestellt.</translation>
    </message>
    <message>
        <source>-0 needs &quot;-&quot;, for names from the input.</source>
        <translation>-0 braucht &quot;-&quot;, für Namen aus der Eingabe.</translation>
    </message>
    <message>
        <source>Names come either from the command line or from the input.</source>
        <translation>Namen kommen entweder von der Befehlszeile oder aus der Eingabe.</translation>
    </message>
    <message>
        <source>Name messages, or choose them by options. For all messages there is --all.</source>
        <translation>Nennen Sie Nachrichten, oder wählen Sie sie durch Optionen aus. Für alle Nachrichten gibt es --all.</translation>
    </message>
    <message>
        <source>Messages are either named or chosen by options, not both.</source>
        <translation>Nachrichten werden entweder genannt oder durch Optionen ausgewählt, nicht beides.</translation>
    </message>
    <message>
        <source>All messages of the archive.</source>
        <translation>Alle Nachrichten des Archivs.</translation>
    </message>
    <message>
        <source>Names from the input (&quot;-&quot;) end with a NUL, not with a line.</source>
        <translation>Namen aus der Eingabe (&quot;-&quot;) enden mit einem NUL, nicht mit einer Zeile.</translation>
    </message>
    <message>
        <source>--%1: &quot;%2&quot; is none of %3.</source>
        <translation>--%1: &quot;%2&quot; ist keines von %3.</translation>
    </message>
    <message>
        <source>Entry</source>
        <translation>Eintrag</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Nummer</translation>
    </message>
    <message>
        <source>Only actions of that kind: %1.</source>
        <translation>Nur Aktionen dieser Art: %1.</translation>
    </message>
    <message>
        <source>Only what came to that: %1.</source>
        <translation>Nur was dazu führte: %1.</translation>
    </message>
    <message>
        <source>Only entries with that text somewhere in them.</source>
        <translation>Nur Einträge, in denen irgendwo dieser Text steht.</translation>
    </message>
    <message>
        <source>Print no more than that many.</source>
        <translation>Nicht mehr als so viele ausgeben.</translation>
    </message>
    <message>
        <source>--sort: there is no column &quot;%1&quot;.</source>
        <translation>--sort: Eine Spalte &quot;%1&quot; gibt es nicht.</translation>
    </message>
    <message>
        <source>Sort by a column (date, to, from, subject, size, scl) as the window does. Without it the messages come in order of arrival.</source>
        <translation>Nach einer Spalte sortieren (date, to, from, subject, size, scl), wie es das Fenster tut. Sonst kommen die Nachrichten in der Reihenfolge ihres Eintreffens.</translation>
    </message>
    <message>
        <source>Sort the other way round.</source>
        <translation>Umgekehrt sortieren.</translation>
    </message>
    <message>
        <source>--reverse needs --sort.</source>
        <translation>--reverse braucht --sort.</translation>
    </message>
    <message>
        <source>--names and --print0 cannot be combined with --csv or --json.</source>
        <translation>--names und --print0 gehen nicht zusammen mit --csv oder --json.</translation>
    </message>
    <message>
        <source>Print only names, a line for each.</source>
        <translation>Nur Namen ausgeben, für jeden eine Zeile.</translation>
    </message>
    <message>
        <source>Print only names, each ended by a NUL.</source>
        <translation>Nur Namen ausgeben, jeden durch ein NUL beendet.</translation>
    </message>
    <message>
        <source>--program: &quot;%1&quot; is no name of a program.</source>
        <translation>--program: &quot;%1&quot; ist kein Name eines Programms.</translation>
    </message>
    <message>
        <source>A command is missing. See quellboxctl --help.</source>
        <translation>Ein Befehl fehlt. Siehe quellboxctl --help.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no command. See quellboxctl --help.</source>
        <translation>&quot;%1&quot; ist kein Befehl. Siehe quellboxctl --help.</translation>
    </message>
    <message>
        <source>Detail</source>
        <translation>Einzelheit</translation>
    </message>
    <message>
        <source>Wait that long until the server has taken the message.</source>
        <translation>So lange warten, bis der Server die Nachricht abgeholt hat.</translation>
    </message>
    <message>
        <source>The mail server has taken the test message. Verify postmaster mailbox now!</source>
        <translation>Der Mailserver hat die Testnachricht angenommen. Prüfen Sie jetzt das Postfach des Postmasters!</translation>
    </message>
    <message>
        <source>Testmessage send. Verify postmaster mailbox now!</source>
        <translation>Testnachricht gesendet. Überprüfen Sie jetzt das Postfach des Postmasters!</translation>
    </message>
    <message>
        <source>Exchange Pickup Directory not setup yet.</source>
        <translation>Das Exchange-Pickup-Verzeichnis ist noch nicht eingerichtet.</translation>
    </message>
    <message>
        <source>Pickup directory %1 not found</source>
        <translation>Pickup-Verzeichnis %1 nicht gefunden</translation>
    </message>
    <message>
        <source>The output cannot be written.</source>
        <translation>Die Ausgabe kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Ebene</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Attachments</source>
        <translation>Anhänge</translation>
    </message>
    <message>
        <source>Print the bytes of the message as they are.</source>
        <translation>Die Bytes der Nachricht ausgeben, wie sie sind.</translation>
    </message>
    <message>
        <source>Print the structure of the message.</source>
        <translation>Den Aufbau der Nachricht ausgeben.</translation>
    </message>
    <message>
        <source>--raw cannot be combined with --tree, --csv or --json.</source>
        <translation>--raw geht nicht zusammen mit --tree, --csv oder --json.</translation>
    </message>
    <message>
        <source>Print no more than that many of each: the latest days, and of all else the most frequent.</source>
        <translation>Von jedem nicht mehr als so viele ausgeben: die letzten Tage, und von allem anderen die häufigsten.</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Nachrichten</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Print a table for spreadsheets (RFC 4180, UTF-8).</source>
        <translation>Eine Tabelle für Tabellenkalkulationen ausgeben (RFC 4180, UTF-8).</translation>
    </message>
    <message>
        <source>Print a JSON object in each line.</source>
        <translation>In jeder Zeile ein JSON-Objekt ausgeben.</translation>
    </message>
    <message>
        <source>--csv and --json exclude each other.</source>
        <translation>--csv und --json schließen einander aus.</translation>
    </message>
    <message>
        <source>Another program is changing the whitelist.</source>
        <translation>Ein anderes Programm ändert gerade die Whitelist.</translation>
    </message>
    <message>
        <source>The settings of this system hold only one of several entries that differ in upper and lower case only; this one is left out: %1</source>
        <translation>Die Einstellungen dieses Systems halten von mehreren Einträgen, die sich nur in Groß- und Kleinschreibung unterscheiden, nur einen; dieser fehlt: %1</translation>
    </message>
    <message>
        <source>Invalid email address specified</source>
        <translation>Ungültige E-Mail-Adresse angegeben</translation>
    </message>
    <message>
        <source>Nothing was changed. To agree, give --replace.</source>
        <translation>Nichts wurde geändert. Um zuzustimmen, geben Sie --replace an.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not on the whitelist.</source>
        <translation>&quot;%1&quot; steht nicht auf der Whitelist.</translation>
    </message>
    <message>
        <source>Lets a domain take the place of its addresses.</source>
        <translation>Lässt eine Domäne an die Stelle ihrer Adressen treten.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is none of list, add, remove and test.</source>
        <translation>&quot;%1&quot; ist keines von list, add, remove und test.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number of the history.</source>
        <translation>&quot;%1&quot; ist keine Nummer des Verlaufs.</translation>
    </message>
    <message>
        <source>Give either an action or entries.</source>
        <translation>Geben Sie entweder eine Aktion oder Einträge an.</translation>
    </message>
    <message>
        <source>Take back one entry of the history. May be given several times.</source>
        <translation>Einen Eintrag des Verlaufs zurücknehmen. Mehrmals möglich.</translation>
    </message>
    <message>
        <source>There is nothing that can be taken back.</source>
        <translation>Es gibt nichts, was zurückgenommen werden kann.</translation>
    </message>
    <message>
        <source>Look every so many seconds; without it as often as the settings say.</source>
        <translation>Alle so viele Sekunden nachsehen; sonst so oft, wie die Einstellungen sagen.</translation>
    </message>
    <message>
        <source>The settings cannot be read. Make sure that you may read the file %1.</source>
        <translation>Die Einstellungen können nicht gelesen werden. Stellen Sie sicher, dass Sie die Datei %1 lesen dürfen.</translation>
    </message>
    <message>
        <source>The settings have no history kept (HistoryDays is 0).</source>
        <translation>Nach den Einstellungen wird kein Verlauf aufbewahrt (HistoryDays ist 0).</translation>
    </message>
    <message>
        <source>--match: the text after &quot;%1&quot; is missing.</source>
        <translation>--match: Der Text nach &quot;%1&quot; fehlt.</translation>
    </message>
    <message>
        <source>--names and --print0 need --dry-run.</source>
        <translation>--names und --print0 brauchen --dry-run.</translation>
    </message>
    <message>
        <source>The names cannot be read from the input.</source>
        <translation>Die Namen können nicht aus der Eingabe gelesen werden.</translation>
    </message>
    <message>
        <source>The name of a directory is empty.</source>
        <translation>Der Name eines Verzeichnisses ist leer.</translation>
    </message>
    <message>
        <source>No archive is set up. Choose one in the window, or name it by --archive.</source>
        <translation>Es ist kein Archiv eingerichtet. Wählen Sie eines im Fenster, oder nennen Sie es mit --archive.</translation>
    </message>
    <message>
        <source>--replace belongs to add.</source>
        <translation>--replace gehört zu add.</translation>
    </message>
    <message>
        <source>Entry %1 cannot be taken back.</source>
        <translation>Der Eintrag %1 kann nicht zurückgenommen werden.</translation>
    </message>
    <message>
        <source>Messages by day and rating</source>
        <translation>Nachrichten nach Tag und Bewertung</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>Ratings</source>
        <translation>Bewertungen</translation>
    </message>
    <message>
        <source>Rating</source>
        <translation>Bewertung</translation>
    </message>
    <message>
        <source>Sender domains</source>
        <translation>Absender-Domains</translation>
    </message>
    <message>
        <source>Sender domain</source>
        <translation>Absender-Domain</translation>
    </message>
    <message>
        <source>Recipients</source>
        <translation>Empfänger</translation>
    </message>
    <message>
        <source>Recipient</source>
        <translation>Empfänger</translation>
    </message>
    <message>
        <source>Alike subjects</source>
        <translation>Ähnliche Betreffe</translation>
    </message>
    <message>
        <source>(none)</source>
        <translation>(keine Angabe)</translation>
    </message>
    <message>
        <source>rating %1</source>
        <translation>Bewertung %1</translation>
    </message>
    <message>
        <source>%1, rating %2</source>
        <translation>%1, Bewertung %2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>none</source>
        <comment>no rating</comment>
        <translation>keine</translation>
    </message>
    <message>
        <source>below 0</source>
        <translation>unter 0</translation>
    </message>
    <message>
        <source>%1 and more</source>
        <translation>%1 und mehr</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>Counts messages and bytes by day, spam confidence, domain of the sender, recipient and subject.</source>
        <translation>Zählt Nachrichten und Bytes nach Tag, Spam-Bewertung, Domäne des Absenders, Empfänger und Betreff.</translation>
    </message>
    <message>
        <source>Count by that: %1. May be given several times; without it by all but subjects.</source>
        <translation>Danach zählen: %1. Kann mehrmals angegeben werden; ohne diese Option nach allem außer Betreffen.</translation>
    </message>
    <message>
        <source>The picture could not be written as PNG.</source>
        <translation>Das Bild konnte nicht als PNG geschrieben werden.</translation>
    </message>
    <message>
        <source>[hidden text: %1]</source>
        <translation>[verborgener Text: %1]</translation>
    </message>
    <message>
        <source>[a form that is sent to %1]</source>
        <translation>[ein Formular, das an %1 geschickt wird]</translation>
    </message>
    <message>
        <source>[picture: %1]</source>
        <translation>[Bild: %1]</translation>
    </message>
    <message>
        <source>[a field for a password]</source>
        <translation>[ein Feld für ein Kennwort]</translation>
    </message>
    <message>
        <source>a program</source>
        <translation>ein Programm</translation>
    </message>
    <message>
        <source>a ZIP archive or an office document</source>
        <translation>ein ZIP-Archiv oder ein Office-Dokument</translation>
    </message>
    <message>
        <source>an office document</source>
        <translation>ein Office-Dokument</translation>
    </message>
    <message>
        <source>a PDF document</source>
        <translation>ein PDF-Dokument</translation>
    </message>
    <message>
        <source>a picture</source>
        <translation>ein Bild</translation>
    </message>
    <message>
        <source>a web page</source>
        <translation>eine Webseite</translation>
    </message>
    <message>
        <source>a text with formats (RTF)</source>
        <translation>einen formatierten Text (RTF)</translation>
    </message>
    <message>
        <source>an archive</source>
        <translation>ein Archiv</translation>
    </message>
    <message>
        <source>A link shows %1, but leads to %2.</source>
        <translation>Ein Link zeigt %1, führt aber zu %2.</translation>
    </message>
    <message>
        <source>A link begins as if it led to %1, but leads to %2.</source>
        <translation>Ein Link beginnt, als führte er zu %1, führt aber zu %2.</translation>
    </message>
    <message>
        <source>The domain %1 (%2) is written in letters that can be taken for those of %3.</source>
        <translation>Die Domäne %1 (%2) ist mit Buchstaben geschrieben, die man für die von %3 halten kann.</translation>
    </message>
    <message>
        <source>The domain %1 (%2) mixes letters of several scripts, and can be taken for %3.</source>
        <translation>Die Domäne %1 (%2) mischt Buchstaben mehrerer Schriften, und man kann sie für %3 halten.</translation>
    </message>
    <message>
        <source>The attachment %1 is declared as %2, but holds %3.</source>
        <translation>Der Anhang %1 gibt sich als %2 aus, enthält aber %3.</translation>
    </message>
    <message>
        <source>The attachment %1 is declared as %2, which does not fit its name.</source>
        <translation>Der Anhang %1 gibt sich als %2 aus, was nicht zu seinem Namen passt.</translation>
    </message>
    <message>
        <source>The name of the attachment %1 hides its ending.</source>
        <translation>Der Name des Anhangs %1 verbirgt seine Endung.</translation>
    </message>
    <message>
        <source>The attachment %1 runs when it is opened.</source>
        <translation>Der Anhang %1 wird ausgeführt, wenn man ihn öffnet.</translation>
    </message>
    <message>
        <source>The attachment %1 is a document with programs in it.</source>
        <translation>Der Anhang %1 ist ein Dokument, das Programme enthält.</translation>
    </message>
    <message>
        <source>Attached message</source>
        <translation>Angehängte Nachricht</translation>
    </message>
    <message>
        <source>[The rest of this text is not shown.]</source>
        <translation>[Der Rest dieses Textes wird nicht angezeigt.]</translation>
    </message>
    <message>
        <source>From: %1</source>
        <translation>Von: %1</translation>
    </message>
    <message>
        <source>To: %1</source>
        <translation>An: %1</translation>
    </message>
    <message>
        <source>Cc: %1</source>
        <translation>Kopie: %1</translation>
    </message>
    <message>
        <source>Date: %1</source>
        <translation>Datum: %1</translation>
    </message>
    <message>
        <source>Subject: %1</source>
        <translation>Betreff: %1</translation>
    </message>
    <message>
        <source>without a name</source>
        <translation>ohne Namen</translation>
    </message>
    <message>
        <source>runs when it is opened</source>
        <translation>wird beim Öffnen ausgeführt</translation>
    </message>
    <message>
        <source>holds programs</source>
        <translation>enthält Programme</translation>
    </message>
    <message>
        <source>Attachments:</source>
        <translation>Anhänge:</translation>
    </message>
    <message>
        <source>Links:</source>
        <translation>Links:</translation>
    </message>
    <message>
        <source>[The message holds no text.]</source>
        <translation>[Die Nachricht enthält keinen Text.]</translation>
    </message>
    <message>
        <source>The message comes from %1, but names %2 as its sender: these are different organizations.</source>
        <translation>Die Nachricht kommt von %1, nennt aber %2 als Absender: Das sind verschiedene Organisationen.</translation>
    </message>
    <message>
        <source>A reply goes to %1, which does not belong to the organization of the sender, %2.</source>
        <translation>Eine Antwort geht an %1, was nicht zur Organisation des Absenders %2 gehört.</translation>
    </message>
    <message>
        <source>The name of the sender shows %1, but the address is %2.</source>
        <translation>Der Name des Absenders zeigt %1, die Adresse ist aber %2.</translation>
    </message>
    <message>
        <source>Your server %1 has found that the message does not come from where it says: %2.</source>
        <translation>Ihr Server %1 hat festgestellt, dass die Nachricht nicht von dort kommt, woher sie zu kommen vorgibt: %2.</translation>
    </message>
    <message>
        <source>Your server %1 has found no proof of where the message comes from.</source>
        <translation>Ihr Server %1 hat keinen Beleg dafür gefunden, woher die Nachricht kommt.</translation>
    </message>
    <message>
        <source>Your server %1 has proof only that the message comes from %2, which is not the sender&apos;s organization.</source>
        <translation>Ihr Server %1 hat nur einen Beleg dafür, dass die Nachricht von %2 kommt; das ist nicht die Organisation des Absenders.</translation>
    </message>
    <message>
        <source>The message was sent on by %1, which is not the organization of its sender, %2.</source>
        <translation>Die Nachricht wurde von %1 weitergeschickt; das ist nicht die Organisation des Absenders %2.</translation>
    </message>
    <message>
        <source>A reply goes to %1, where the message was sent on, and not to the sender, %2.</source>
        <translation>Eine Antwort geht an %1, wo die Nachricht weitergeschickt wurde, und nicht an den Absender %2.</translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation>Warnungen</translation>
    </message>
    <message>
        <source>[button: %1]</source>
        <translation>[Schaltfläche: %1]</translation>
    </message>
    <message>
        <source>[field: %1]</source>
        <translation>[Feld: %1]</translation>
    </message>
    <message>
        <source>%1 - shown as: %2</source>
        <translation>%1 - angezeigt als: %2</translation>
    </message>
    <message>
        <source>[Further links are not listed. Behind them stands [?].]</source>
        <translation>[Weitere Links sind nicht aufgeführt. Hinter ihnen steht [?].]</translation>
    </message>
    <message>
        <source>[The rest of this message is not shown.]</source>
        <translation>[Der Rest dieser Nachricht wird nicht angezeigt.]</translation>
    </message>
    <message>
        <source>The file cannot be found, but its folder may not be the one that was listed. Refresh the list.</source>
        <translation>Die Datei ist nicht zu finden, doch ihr Ordner ist vielleicht nicht der, der aufgelistet wurde. Aktualisieren Sie die Liste.</translation>
    </message>
</context>
<context>
    <name>quellbox::ActionDesk</name>
    <message numerus="yes">
        <source>%n messages</source>
        <translation>
            <numerusform>%n Nachricht</numerusform>
            <numerusform>%n Nachrichten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quellbox::BarChart</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n messages</source>
        <translation>
            <numerusform>%n Nachricht</numerusform>
            <numerusform>%n Nachrichten</numerusform>
        </translation>
    </message>
    <message>
        <source>one message</source>
        <translation>eine Nachricht</translation>
    </message>
    <message>
        <source>No messages are shown.</source>
        <translation>Es werden keine Nachrichten angezeigt.</translation>
    </message>
</context>
<context>
    <name>quellbox::BusyDisplay</name>
    <message>
        <source>Please wait till operation completes...</source>
        <translation>Bitte warten Sie, bis der Vorgang abgeschlossen ist...</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>quellbox::ContentsPane</name>
    <message>
        <source>Message format layout</source>
        <translation>Aufbau der Nachricht</translation>
    </message>
    <message>
        <source>Raw message contents</source>
        <translation>Quelltext der Nachricht</translation>
    </message>
    <message>
        <source>Readable text of the message</source>
        <translation>Lesbarer Text der Nachricht</translation>
    </message>
</context>
<context>
    <name>quellbox::DeliveryFields</name>
    <message>
        <source>the pickup directory</source>
        <translation>das Pickup-Verzeichnis</translation>
    </message>
    <message>
        <source>SMTP, to a mail server</source>
        <translation>einen Mailserver, mit SMTP</translation>
    </message>
    <message>
        <source>a command</source>
        <translation>einen Befehl</translation>
    </message>
    <message>
        <source>TLS as soon as the server offers it (STARTTLS)</source>
        <translation>TLS, sobald der Server es anbietet (STARTTLS)</translation>
    </message>
    <message>
        <source>TLS from the beginning</source>
        <translation>TLS von Anfang an</translation>
    </message>
    <message>
        <source>none; then without a user</source>
        <translation>keine; dann ohne Benutzer</translation>
    </message>
    <message>
        <source>The name of the mail server is needed.</source>
        <translation>Der Name des Mailservers fehlt.</translation>
    </message>
    <message>
        <source>A password is sent through a secured connection only.</source>
        <translation>Ein Passwort wird nur durch eine gesicherte Verbindung gesendet.</translation>
    </message>
    <message>
        <source>Exchange&apos;s replay directory</source>
        <translation>das Replay-Verzeichnis von Exchange</translation>
    </message>
    <message>
        <source>The directory that is set as the pickup directory: %1</source>
        <translation>Das Verzeichnis, das als Pickup-Verzeichnis eingestellt ist: %1</translation>
    </message>
    <message>
        <source>This is the Pickup directory of the server, which does not read the envelope in a file. Set the Replay directory beside it.</source>
        <translation>Das ist das Pickup-Verzeichnis des Servers, das den Umschlag in einer Datei nicht liest. Stellen Sie das Replay-Verzeichnis daneben ein.</translation>
    </message>
</context>
<context>
    <name>quellbox::EntryCombo</name>
    <message>
        <source>Sender or domain</source>
        <translation>Absender oder Domain</translation>
    </message>
    <message>
        <source>Tolerated senders</source>
        <translation>Tolerierte Absender</translation>
    </message>
</context>
<context>
    <name>quellbox::ExportDesk</name>
    <message>
        <source>Messages of %1</source>
        <translation>Nachrichten vom %1</translation>
    </message>
    <message>
        <source>One message written to %1</source>
        <translation>Eine Nachricht in %1 geschrieben</translation>
    </message>
    <message numerus="yes">
        <source>%n messages written to %1</source>
        <translation>
            <numerusform>%n Nachricht in %1 geschrieben</numerusform>
            <numerusform>%n Nachrichten in %1 geschrieben</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quellbox::HelpDesk</name>
    <message>
        <source>This system has no viewer for help files:

%1</source>
        <translation>Auf diesem System gibt es kein Programm, das Hilfedateien anzeigt:

%1</translation>
    </message>
</context>
<context>
    <name>quellbox::HistoryDesk</name>
    <message>
        <source>History of %1</source>
        <translation>Verlauf vom %1</translation>
    </message>
    <message>
        <source>Nothing was exported, because something else is being done. Try again when it has ended.</source>
        <translation>Es wurde nichts exportiert, weil gerade etwas anderes getan wird. Versuchen Sie es wieder, wenn es beendet ist.</translation>
    </message>
    <message numerus="yes">
        <source>%n entries written to %1</source>
        <translation>
            <numerusform>%n Eintrag nach %1 geschrieben</numerusform>
            <numerusform>%n Einträge nach %1 geschrieben</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quellbox::MainMenus</name>
    <message>
        <source>Folder</source>
        <translation>Verzeichnis</translation>
    </message>
    <message>
        <source>Archive...</source>
        <translation>Archiv...</translation>
    </message>
    <message>
        <source>Pickup...</source>
        <translation>Pickup...</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>Select &amp;None</source>
        <translation>Auswahl auf&amp;heben</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alle auswählen</translation>
    </message>
    <message>
        <source>Mar&amp;k as Read</source>
        <translation>Als &amp;gelesen markieren</translation>
    </message>
    <message>
        <source>Mark as U&amp;nread</source>
        <translation>Als &amp;ungelesen markieren</translation>
    </message>
    <message>
        <source>Mark All as R&amp;ead</source>
        <translation>All&amp;e als gelesen markieren</translation>
    </message>
    <message>
        <source>&amp;Find...</source>
        <translation>&amp;Suchen...</translation>
    </message>
    <message>
        <source>Find &amp;Next</source>
        <translation>&amp;Weitersuchen</translation>
    </message>
    <message>
        <source>Find A&amp;ll</source>
        <translation>A&amp;lle suchen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>Bulk mode</source>
        <translation>Bulk-Modus</translation>
    </message>
    <message>
        <source>&amp;Hide when Minimized</source>
        <translation>Beim &amp;Minimieren ausblenden</translation>
    </message>
    <message>
        <source>&amp;Toolbar</source>
        <translation>&amp;Symbolleiste</translation>
    </message>
    <message>
        <source>&amp;Status Bar</source>
        <translation>S&amp;tatusleiste</translation>
    </message>
    <message>
        <source>Message &amp;contents</source>
        <translation>Nachrichten&amp;inhalt</translation>
    </message>
    <message>
        <source>Format &amp;layout</source>
        <translation>Nachrichten&amp;aufbau</translation>
    </message>
    <message>
        <source>&amp;Actions</source>
        <translation>A&amp;ktionen</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>&amp;Unblock</source>
        <translation>&amp;Freigeben</translation>
    </message>
    <message>
        <source>&amp;Tolerate...</source>
        <translation>&amp;Tolerieren...</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>E&amp;xtras</translation>
    </message>
    <message>
        <source>Pickup &amp;Test...</source>
        <translation>Pickup-&amp;Test...</translation>
    </message>
    <message>
        <source>&amp;Cleansing Wizard...</source>
        <translation>&amp;Bereinigungs-Assistent...</translation>
    </message>
    <message>
        <source>&amp;Options...</source>
        <translation>&amp;Optionen...</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Getting Started</source>
        <translation>&amp;Erste Schritte</translation>
    </message>
    <message>
        <source>Suggestions</source>
        <translation>Vorschläge</translation>
    </message>
    <message>
        <source>Check for Program &amp;Update...</source>
        <translation>Nach &amp;Updates suchen...</translation>
    </message>
    <message>
        <source>Give &amp;Feedback...</source>
        <translation>&amp;Feedback geben...</translation>
    </message>
    <message>
        <source>&amp;About this Program...</source>
        <translation>&amp;Info zu diesem Programm...</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Nachricht</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <comment>what to do with a message</comment>
        <translation>&amp;Anzeigen</translation>
    </message>
    <message>
        <source>Tray</source>
        <translation>Infobereich</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Delete selected message(s) permanently</source>
        <translation>Ausgewählte Nachricht(en) endgültig löschen</translation>
    </message>
    <message>
        <source>Unblock and deliver selected message(s)</source>
        <translation>Ausgewählte Nachricht(en) freigeben und zustellen</translation>
    </message>
    <message>
        <source>Add sender(s) to whitelist for toleration</source>
        <translation>Absender auf die Whitelist setzen und tolerieren</translation>
    </message>
    <message>
        <source>Find text in message header</source>
        <translation>Text im Nachrichtenkopf suchen</translation>
    </message>
    <message>
        <source>Filter the message display</source>
        <translation>Angezeigte Nachrichten filtern</translation>
    </message>
    <message>
        <source>Launch cleansing wizard</source>
        <translation>Bereinigungs-Assistenten starten</translation>
    </message>
    <message>
        <source>Maintain whitelist of tolerated senders</source>
        <translation>Whitelist der tolerierten Absender pflegen</translation>
    </message>
    <message>
        <source>Collapse or Expand all parts</source>
        <translation>Alle Teile ein- oder ausklappen</translation>
    </message>
    <message>
        <source>Reveal attachment</source>
        <translation>Anhang anzeigen</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Nachrichten</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;History...</source>
        <translation>&amp;Verlauf...</translation>
    </message>
    <message>
        <source>&amp;Export List...</source>
        <translation>Liste &amp;exportieren...</translation>
    </message>
    <message>
        <source>Filter &amp;by text</source>
        <translation>Nach &amp;Text filtern</translation>
    </message>
    <message>
        <source>&amp;Overview...</source>
        <translation>Über&amp;sicht...</translation>
    </message>
    <message>
        <source>&amp;Readable text</source>
        <translation>Les&amp;barer Text</translation>
    </message>
</context>
<context>
    <name>quellbox::MessageListView</name>
    <message>
        <source>Messages</source>
        <translation>Nachrichten</translation>
    </message>
</context>
<context>
    <name>quellbox::OverviewDesk</name>
    <message>
        <source>Something else is being done. Try again when it has ended.</source>
        <translation>Es wird gerade etwas anderes ausgeführt. Versuchen Sie es noch einmal, wenn das beendet ist.</translation>
    </message>
    <message numerus="yes">
        <source>%n messages selected</source>
        <translation>
            <numerusform>%n Nachricht ausgewählt</numerusform>
            <numerusform>%n Nachrichten ausgewählt</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <comment>a picture of a day</comment>
        <translation>%1 am %2</translation>
    </message>
    <message>
        <source>Written to %1</source>
        <translation>Nach %1 geschrieben</translation>
    </message>
    <message>
        <source>One message selected</source>
        <translation>Eine Nachricht ausgewählt</translation>
    </message>
    <message>
        <source>The whitelist is switched off. Tools &gt; Options..., page Toleration, switches it on.</source>
        <translation>Die Whitelist ist ausgeschaltet. Extras &gt; Optionen..., Seite Toleranz, schaltet sie ein.</translation>
    </message>
    <message>
        <source>Something else is being done.</source>
        <translation>Es wird gerade etwas anderes ausgeführt.</translation>
    </message>
    <message>
        <source>The list is being counted anew. Try again in a moment.</source>
        <translation>Die Liste wird gerade neu gezählt. Versuchen Sie es gleich noch einmal.</translation>
    </message>
    <message>
        <source>None of these messages has a sender that could be added to the whitelist.</source>
        <translation>Keine dieser Nachrichten hat einen Absender, der in die Whitelist aufgenommen werden könnte.</translation>
    </message>
</context>
<context>
    <name>quellbox::OverviewPanel</name>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>%1 as a table</source>
        <translation>%1 als Tabelle</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Speichern...</translation>
    </message>
    <message>
        <source>Save %1</source>
        <translation>%1 speichern</translation>
    </message>
    <message>
        <source>Save the picture as PNG or SVG, or its table as CSV</source>
        <translation>Speichert das Bild als PNG oder SVG oder seine Tabelle als CSV</translation>
    </message>
    <message>
        <source>Select Messages</source>
        <translation>Nachrichten auswählen</translation>
    </message>
    <message>
        <source>Add to Selection</source>
        <translation>Zur Auswahl hinzufügen</translation>
    </message>
    <message>
        <source>Copy Table</source>
        <translation>Tabelle kopieren</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1 (%2 von %3)</translation>
    </message>
    <message>
        <source>Tolerate Senders...</source>
        <translation>Absender tolerieren...</translation>
    </message>
</context>
<context>
    <name>quellbox::PanesLayout</name>
    <message>
        <source>Divider between list and contents</source>
        <translation>Trennleiste zwischen Liste und Inhalt</translation>
    </message>
    <message>
        <source>Divider between layout and raw contents</source>
        <translation>Trennleiste zwischen Aufbau und Quelltext</translation>
    </message>
</context>
<context>
    <name>quellbox::QuickDesk</name>
    <message>
        <source>Filter by text</source>
        <translation>Nach Text filtern</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Messages with these words:</source>
        <translation>Nachrichten mit diesen Wörtern:</translation>
    </message>
</context>
<context>
    <name>quellbox::RawPane</name>
    <message>
        <source>[The rest is not shown: %1 of %2 characters]</source>
        <translation>[Der Rest wird nicht angezeigt: %1 von %2 Zeichen]</translation>
    </message>
</context>
<context>
    <name>quellbox::RefreshDesk</name>
    <message numerus="yes">
        <source>%n Messages removed !</source>
        <translation>
            <numerusform>%n Nachricht entfernt!</numerusform>
            <numerusform>%n Nachrichten entfernt!</numerusform>
        </translation>
    </message>
    <message>
        <source>Time of last screen update</source>
        <translation>Zeitpunkt der letzten Aktualisierung der Anzeige</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>New messages are not listed, because the message that was listed last has gone. Press F5 to list them.</source>
        <translation>Neue Nachrichten werden nicht aufgelistet, weil es die zuletzt aufgelistete nicht mehr gibt. F5 listet sie auf.</translation>
    </message>
</context>
<context>
    <name>quellbox::SetupDesk</name>
    <message>
        <source>Select Archive Directory</source>
        <translation>Archivverzeichnis auswählen</translation>
    </message>
    <message>
        <source>Select Pickup Directory</source>
        <translation>Pickup-Verzeichnis auswählen</translation>
    </message>
    <message>
        <source>The password for the mail server could not be kept: %1</source>
        <translation>Das Passwort für den Mailserver ließ sich nicht aufbewahren: %1</translation>
    </message>
</context>
<context>
    <name>quellbox::StatusBarView</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Last screen update</source>
        <translation>Letzte Aktualisierung der Anzeige</translation>
    </message>
    <message>
        <source>Number of archived files</source>
        <translation>Anzahl der archivierten Dateien</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Size or time</source>
        <translation>Größe oder Zeitpunkt</translation>
    </message>
    <message>
        <source>Number of messages</source>
        <translation>Anzahl der Nachrichten</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Leave alone what has not begun yet (Esc)</source>
        <translation>Nicht mehr anfangen, was noch nicht begonnen hat (Esc)</translation>
    </message>
    <message>
        <source>Messages that could not be dealt with, and why (F8)</source>
        <translation>Nachrichten, die nicht bearbeitet werden konnten, und warum (F8)</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n fehlgeschlagen</numerusform>
            <numerusform>%n fehlgeschlagen</numerusform>
        </translation>
    </message>
    <message>
        <source>Messages that could not be dealt with</source>
        <translation>Nicht bearbeitete Nachrichten</translation>
    </message>
    <message>
        <source>%1: messages that could not be dealt with</source>
        <translation>%1: Nachrichten, die nicht bearbeitet werden konnten</translation>
    </message>
</context>
<context>
    <name>quellbox::StatusPanelView</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>quellbox::ToolsDesk</name>
    <message>
        <source>Removing %1</source>
        <translation>%1 wird entfernt</translation>
    </message>
    <message>
        <source>Exchange Pickup Directory not setup yet.</source>
        <translation>Das Exchange-Pickup-Verzeichnis ist noch nicht eingerichtet.</translation>
    </message>
    <message>
        <source>Testmessage send. Verify postmaster mailbox now!</source>
        <translation>Testnachricht gesendet. Überprüfen Sie jetzt das Postfach des Postmasters!</translation>
    </message>
    <message>
        <source>The mail server has taken the test message. Verify postmaster mailbox now!</source>
        <translation>Der Mailserver hat die Testnachricht angenommen. Prüfen Sie jetzt das Postfach des Postmasters!</translation>
    </message>
</context>
<context>
    <name>quellbox::TrayPresence</name>
    <message>
        <source>This desktop has no notification area, so the window is only minimized</source>
        <translation>Dieser Desktop hat keinen Infobereich, daher wird das Fenster nur minimiert</translation>
    </message>
</context>
<context>
    <name>quellbox::frmAbout</name>
    <message>
        <source>About %1</source>
        <translation>Info über %1</translation>
    </message>
    <message>
        <source>%1 by %2

%3</source>
        <translation>%1 von %2

%3</translation>
    </message>
    <message>
        <source>Version %1 - Build %2

%3
%4</source>
        <translation>Version %1 - Build %2

%3
%4</translation>
    </message>
</context>
<context>
    <name>quellbox::frmCleansing</name>
    <message>
        <source>Counting...</source>
        <translation>Wird gezählt...</translation>
    </message>
    <message>
        <source>The archive cannot be read: %1</source>
        <translation>Das Archiv kann nicht gelesen werden: %1</translation>
    </message>
</context>
<context>
    <name>quellbox::frmFind</name>
    <message>
        <source>Find All</source>
        <translation>Alle suchen</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
</context>
<context>
    <name>quellbox::frmFolders</name>
    <message>
        <source>Cannot use drive %1</source>
        <translation>Laufwerk %1 kann nicht verwendet werden</translation>
    </message>
</context>
<context>
    <name>quellbox::frmHelp</name>
    <message>
        <source>The help of this program has no topic &quot;%1&quot;.</source>
        <translation>Die Hilfe zu diesem Programm hat kein Thema „%1“.</translation>
    </message>
    <message>
        <source>The help of this program has no topic number %1.</source>
        <translation>Die Hilfe zu diesem Programm hat kein Thema Nummer %1.</translation>
    </message>
    <message>
        <source>Quellbox Help</source>
        <translation>Quellbox-Hilfe</translation>
    </message>
    <message>
        <source>%1 - Quellbox Help</source>
        <translation>%1 - Quellbox-Hilfe</translation>
    </message>
</context>
<context>
    <name>quellbox::frmHistory</name>
    <message>
        <source>All actions</source>
        <translation>Alle Aktionen</translation>
    </message>
    <message>
        <source>All results</source>
        <translation>Alle Ergebnisse</translation>
    </message>
    <message numerus="yes">
        <source>%n entries</source>
        <translation>
            <numerusform>%n Eintrag</numerusform>
            <numerusform>%n Einträge</numerusform>
        </translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>quellbox::frmMain</name>
    <message>
        <source>These are the files of the program&apos;s own folder. Choose the directory with the blocked messages by File &gt; Folder &gt; Archive..., and the one from which the mail server delivers by File &gt; Folder &gt; Pickup...</source>
        <translation>Dies sind die Dateien im eigenen Ordner des Programms. Wählen Sie das Verzeichnis mit den blockierten Nachrichten mit Datei &gt; Verzeichnis &gt; Archiv... und das, aus dem der Mailserver zustellt, mit Datei &gt; Verzeichnis &gt; Pickup...</translation>
    </message>
</context>
<context>
    <name>quellbox::frmOptions</name>
    <message>
        <source>Looking at the newest messages...</source>
        <translation>Die neuesten Nachrichten werden angesehen...</translation>
    </message>
    <message>
        <source>The archive cannot be read: %1</source>
        <translation>Das Archiv kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The archive holds no messages.</source>
        <translation>Das Archiv enthält keine Nachrichten.</translation>
    </message>
    <message numerus="yes">
        <source>The newest messages (%n) do not say which server has blocked them.</source>
        <translation>
            <numerusform>Die neuesten Nachrichten (%n) sagen nicht, welcher Server sie blockiert hat.</numerusform>
            <numerusform>Die neuesten Nachrichten (%n) sagen nicht, welcher Server sie blockiert hat.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Found in %1 of the newest messages (%n): %2</source>
        <translation>
            <numerusform>Gefunden in %1 der neuesten Nachrichten (%n): %2</numerusform>
            <numerusform>Gefunden in %1 der neuesten Nachrichten (%n): %2</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quellbox::frmOverview</name>
    <message numerus="yes">
        <source>Overview of %n messages</source>
        <translation>
            <numerusform>Übersicht über %n Nachricht</numerusform>
            <numerusform>Übersicht über %n Nachrichten</numerusform>
        </translation>
    </message>
    <message>
        <source>Overview of one message</source>
        <translation>Übersicht über eine Nachricht</translation>
    </message>
    <message>
        <source>Overview of %1 of %2 messages</source>
        <translation>Übersicht über %1 von %2 Nachrichten</translation>
    </message>
</context>
<context>
    <name>quellbox::frmOwnServer</name>
    <message>
        <source>the number at the beginning</source>
        <translation>die Zahl am Anfang</translation>
    </message>
    <message>
        <source>the number behind a text</source>
        <translation>die Zahl hinter einem Text</translation>
    </message>
    <message>
        <source>the text before a per cent sign</source>
        <translation>der Text vor einem Prozentzeichen</translation>
    </message>
    <message>
        <source>how often a character is at the beginning</source>
        <translation>wie oft ein Zeichen am Anfang steht</translation>
    </message>
    <message>
        <source>The name of a file has no slashes and no characters that cannot be seen.</source>
        <translation>Der Name einer Datei hat keine Schrägstriche und keine unsichtbaren Zeichen.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be the name of a header field. Such a name has no blanks, no colon and no accented letters.</source>
        <translation>„%1“ kann nicht der Name eines Kopffelds sein. Ein solcher Name hat keine Leerzeichen, keinen Doppelpunkt und keine Umlaute.</translation>
    </message>
    <message>
        <source>The spam confidence stands in one field only.</source>
        <translation>Die Spam-Bewertung steht nur in einem Feld.</translation>
    </message>
    <message>
        <source>Enter the one character that is counted.</source>
        <translation>Geben Sie das eine Zeichen ein, das gezählt wird.</translation>
    </message>
    <message>
        <source>Enter the text behind which the number stands.</source>
        <translation>Geben Sie den Text ein, hinter dem die Zahl steht.</translation>
    </message>
    <message>
        <source>Only ASCII can be found here.</source>
        <translation>Nur ASCII kann hier gefunden werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is written by the sender of a message, and says nothing about its envelope.</source>
        <translation>„%1“ stammt vom Absender einer Nachricht und sagt nichts über ihren Umschlag.</translation>
    </message>
    <message>
        <source>Looking at the newest message...</source>
        <translation>Die neueste Nachricht wird angesehen...</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>nichts</translation>
    </message>
    <message>
        <source>The archive holds no messages.</source>
        <translation>Das Archiv enthält keine Nachrichten.</translation>
    </message>
    <message>
        <source>The archive cannot be read: %1</source>
        <translation>Das Archiv kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>Message: %1
Spam confidence: %2
Envelope sender: %3
Recipients: %4</source>
        <translation>Nachricht: %1
Spam-Bewertung: %2
Umschlagabsender: %3
Empfänger: %4</translation>
    </message>
</context>
<context>
    <name>quellbox::frmTolerate</name>
    <message>
        <source>Invalid email address specified</source>
        <translation>Ungültige E-Mail-Adresse angegeben</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>und %n weiterer</numerusform>
            <numerusform>und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>The settings of this system hold only one of several entries that differ in upper and lower case only. The list is stored without these:</source>
        <translation>Von mehreren Einträgen, die sich nur in Groß- und Kleinschreibung unterscheiden, nehmen die Einstellungen dieses Systems nur einen auf. Die Liste ist ohne die folgenden gespeichert:</translation>
    </message>
</context>
<context>
    <name>quellbox::frmView</name>
    <message>
        <source>&amp;Source</source>
        <translation>&amp;Quelltext</translation>
    </message>
    <message>
        <source>&amp;Readable text</source>
        <translation>Les&amp;barer Text</translation>
    </message>
</context>
</TS>
