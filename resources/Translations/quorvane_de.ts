<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
  <name>Quorvane</name>
  <message>
    <source>(Automatically started because your battery is low)</source>
    <translation>(Automatisch gestartet, weil der Akku fast leer ist)</translation>
  </message>
  <message>
    <source>Another version of Quorvane is already running. Please quit it, then try again.</source>
    <translation>Eine andere Version von Quorvane läuft bereits. Bitte beenden Sie diese und versuchen Sie es dann noch einmal.</translation>
  </message>
  <message>
    <source>BKTV is trying to start its web service.</source>
    <translation>BKTV möchte seinen Webdienst starten.</translation>
  </message>
  <message>
    <source>Change them in the file %@. Every change is applied at once, and "quorvane --help" tells what can be set.</source>
    <translation>Ändern Sie sie in der Datei %@. Jede Änderung gilt sofort; „quorvane --help“ nennt, was sich einstellen lässt.</translation>
  </message>
  <message>
    <source>Check For Updates</source>
    <translation>Nach Updates suchen</translation>
  </message>
  <message>
    <source>Checking for updates failed</source>
    <translation>Die Suche nach Updates ist fehlgeschlagen</translation>
  </message>
  <message>
    <source>Close</source>
    <translation>Schließen</translation>
  </message>
  <message>
    <source>Install it with your system's software updates.</source>
    <translation>Installieren Sie es mit der Softwareaktualisierung Ihres Systems.</translation>
  </message>
  <message>
    <source>It was not installed from a package. Get a newer one where you got it.</source>
    <translation>Sie wurde nicht aus einem Paket installiert. Holen Sie eine neuere dort, woher diese stammt.</translation>
  </message>
  <message>
    <source>LOW POWER MODE STARTS AT %d%%</source>
    <translation>STROMSPARMODUS STARTET BEI %d%%</translation>
  </message>
  <message>
    <source>Less Than %d%% Battery Remaining</source>
    <translation>Weniger als %d%% Akkuladung übrig</translation>
  </message>
  <message>
    <source>Low Power Mode is On</source>
    <translation>Stromsparmodus ist an</translation>
  </message>
  <message>
    <source>Low Power Mode is on</source>
    <translation>Der Stromsparmodus ist an</translation>
  </message>
  <message>
    <source>Low power mode is now stopped.</source>
    <translation>Der Stromsparmodus ist jetzt beendet.</translation>
  </message>
  <message>
    <source>MANUAL START MODE</source>
    <translation>MANUELLER START</translation>
  </message>
  <message>
    <source>Not Now</source>
    <translation>Nicht jetzt</translation>
  </message>
  <message>
    <source>Not checked for updates</source>
    <translation>Nicht nach Updates gesucht</translation>
  </message>
  <message>
    <source>Open Quorvane Preferences...</source>
    <translation>Quorvane-Einstellungen öffnen …</translation>
  </message>
  <message>
    <source>Quit</source>
    <translation>Beenden</translation>
  </message>
  <message>
    <source>Quit Quorvane</source>
    <translation>Quorvane beenden</translation>
  </message>
  <message>
    <source>Quorvane %@ (r%@)</source>
    <translation>Quorvane %@ (r%@)</translation>
  </message>
  <message>
    <source>Quorvane %@ is available</source>
    <translation>Quorvane %@ ist verfügbar</translation>
  </message>
  <message>
    <source>Quorvane already running</source>
    <translation>Quorvane läuft bereits</translation>
  </message>
  <message>
    <source>Quorvane is up to date</source>
    <translation>Quorvane ist aktuell</translation>
  </message>
  <message>
    <source>Quorvane's Settings</source>
    <translation>Einstellungen von Quorvane</translation>
  </message>
  <message>
    <source>Send Feedback</source>
    <translation>Feedback senden</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Einstellungen</translation>
  </message>
  <message>
    <source>Start</source>
    <translation>Starten</translation>
  </message>
  <message>
    <source>Start Low Power Mode Now</source>
    <translation>Stromsparmodus jetzt starten</translation>
  </message>
  <message>
    <source>Start Low Power Mode?</source>
    <translation>Stromsparmodus starten?</translation>
  </message>
  <message>
    <source>Stopping Low Power Mode</source>
    <translation>Der Stromsparmodus wird beendet</translation>
  </message>
  <message>
    <source>This copy of Quorvane is not updated by your system</source>
    <translation>Diese Kopie von Quorvane wird nicht vom System aktualisiert</translation>
  </message>
  <message>
    <source>Updates come with your system</source>
    <translation>Updates kommen mit Ihrem System</translation>
  </message>
  <message>
    <source>Your Processor is Draining Battery</source>
    <translation>Ihr Prozessor leert den Akku</translation>
  </message>
  <message>
    <source>Your computer is now plugged in.</source>
    <translation>Ihr Computer ist jetzt am Netz.</translation>
  </message>
  <message>
    <source>Your connection is metered. Try again on another one.</source>
    <translation>Ihre Verbindung ist kostenpflichtig. Versuchen Sie es über eine andere noch einmal.</translation>
  </message>
  <message>
    <source>Your distribution delivers updates of Quorvane.</source>
    <translation>Ihre Distribution liefert die Updates von Quorvane.</translation>
  </message>
  <message numerus="yes">
    <source>You saved %d minutes of battery!</source>
    <translation>
      <numerusform>Sie haben %d Minute Akkulaufzeit gespart!</numerusform>
      <numerusform>Sie haben %d Minuten Akkulaufzeit gespart!</numerusform>
    </translation>
  </message>
</context>
</TS>
