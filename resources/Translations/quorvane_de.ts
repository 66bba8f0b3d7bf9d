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
    <source>Ask</source>
    <translation>Fragen</translation>
  </message>
  <message>
    <source>Automatic</source>
    <translation>Automatisch</translation>
  </message>
  <message>
    <source>BKTV is trying to start its web service.</source>
    <translation>BKTV möchte seinen Webdienst starten.</translation>
  </message>
  <message>
    <source>Can hide applications you do not use</source>
    <translation>Kann unbenutzte Anwendungen ausblenden</translation>
  </message>
  <message>
    <source>Can pause browsers in the background</source>
    <translation>Kann Browser im Hintergrund anhalten</translation>
  </message>
  <message>
    <source>Cancel</source>
    <translation>Abbrechen</translation>
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
    <source>Closes this window without leaving an address.</source>
    <translation>Schließt dieses Fenster, ohne eine Adresse zu hinterlassen.</translation>
  </message>
  <message>
    <source>Closes this window. Quorvane goes on in the panel.</source>
    <translation>Schließt dieses Fenster. Quorvane arbeitet in der Leiste weiter.</translation>
  </message>
  <message>
    <source>Dims the screen</source>
    <translation>Dunkelt den Bildschirm ab</translation>
  </message>
  <message>
    <source>E-mail address</source>
    <translation>E-Mail-Adresse</translation>
  </message>
  <message>
    <source>Ends it when you plug in</source>
    <translation>Beendet ihn, wenn Sie das Netzteil anschließen</translation>
  </message>
  <message>
    <source>Get Started</source>
    <translation>Los geht’s</translation>
  </message>
  <message>
    <source>Hear of new versions</source>
    <translation>Von neuen Versionen erfahren</translation>
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
    <source>Leave your e-mail address if we may write to you about Quorvane.</source>
    <translation>Hinterlassen Sie Ihre E-Mail-Adresse, wenn wir Ihnen zu Quorvane schreiben dürfen.</translation>
  </message>
  <message>
    <source>Leaves the address.</source>
    <translation>Hinterlässt die Adresse.</translation>
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
    <source>Low Power Mode makes this laptop’s battery last longer.</source>
    <translation>Im Stromsparmodus hält der Akku dieses Laptops länger.</translation>
  </message>
  <message>
    <source>Low Power Mode starts by itself when the battery runs low.</source>
    <translation>Der Stromsparmodus startet von selbst, wenn der Akku zur Neige geht.</translation>
  </message>
  <message>
    <source>Low Power Mode starts only when you switch it on.</source>
    <translation>Der Stromsparmodus startet nur, wenn Sie ihn einschalten.</translation>
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
    <source>Manual</source>
    <translation>Manuell</translation>
  </message>
  <message>
    <source>News from Quorvane</source>
    <translation>Neues von Quorvane</translation>
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
    <source>Puts everything back afterwards</source>
    <translation>Stellt danach alles wieder her</translation>
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
    <source>Quorvane asks you first when the battery runs low.</source>
    <translation>Quorvane fragt Sie, wenn der Akku zur Neige geht.</translation>
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
    <source>Quorvane’s picture</source>
    <translation>Das Bild von Quorvane</translation>
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
    <source>Slows the processor down</source>
    <translation>Bremst den Prozessor</translation>
  </message>
  <message>
    <source>SplashWindowController</source>
    <translation>SplashWindowController</translation>
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
    <source>Submit</source>
    <translation>Absenden</translation>
  </message>
  <message>
    <source>Tells you how many minutes it saved</source>
    <translation>Sagt Ihnen, wie viele Minuten er gespart hat</translation>
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
    <source>Welcome to Quorvane</source>
    <translation>Willkommen bei Quorvane</translation>
  </message>
  <message>
    <source>What Low Power Mode does, and the three ways in which it can start.</source>
    <translation>Was der Stromsparmodus tut, und die drei Arten, wie er starten kann.</translation>
  </message>
  <message>
    <source>What Quorvane does</source>
    <translation>Was Quorvane tut</translation>
  </message>
  <message>
    <source>Where we may write to you about Quorvane.</source>
    <translation>Wohin wir Ihnen zu Quorvane schreiben dürfen.</translation>
  </message>
  <message>
    <source>While Low Power Mode is on, Quorvane …</source>
    <translation>Im Stromsparmodus …</translation>
  </message>
  <message>
    <source>You choose how it starts</source>
    <translation>Sie wählen, wie er startet</translation>
  </message>
  <message>
    <source>You find Quorvane in the panel. Its menu starts and stops Low Power Mode.</source>
    <translation>Sie finden Quorvane in der Leiste. Sein Menü startet und beendet den Stromsparmodus.</translation>
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
  <message>
    <source>name@example.org</source>
    <translation>name@example.org</translation>
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
