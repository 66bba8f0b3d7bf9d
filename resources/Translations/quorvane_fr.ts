<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
  <name>Quorvane</name>
  <message>
    <source>(Automatically started because your battery is low)</source>
    <translation>(Démarré automatiquement, car la batterie est faible)</translation>
  </message>
  <message>
    <source>Another version of Quorvane is already running. Please quit it, then try again.</source>
    <translation>Une autre version de Quorvane est déjà en cours d’exécution. Veuillez la quitter, puis réessayer.</translation>
  </message>
  <message>
    <source>Ask</source>
    <translation>Demander</translation>
  </message>
  <message>
    <source>Automatic</source>
    <translation>Automatique</translation>
  </message>
  <message>
    <source>BKTV is trying to start its web service.</source>
    <translation>BKTV essaie de démarrer son service web.</translation>
  </message>
  <message>
    <source>Can hide applications you do not use</source>
    <translation>Peut masquer les applications inutilisées</translation>
  </message>
  <message>
    <source>Can pause browsers in the background</source>
    <translation>Peut suspendre les navigateurs en arrière-plan</translation>
  </message>
  <message>
    <source>Cancel</source>
    <translation>Annuler</translation>
  </message>
  <message>
    <source>Change them in the file %@. Every change is applied at once, and "quorvane --help" tells what can be set.</source>
    <translation>Modifiez-les dans le fichier %@. Chaque modification s’applique aussitôt ; « quorvane --help » indique ce qui peut être réglé.</translation>
  </message>
  <message>
    <source>Check For Updates</source>
    <translation>Rechercher des mises à jour</translation>
  </message>
  <message>
    <source>Checking for updates failed</source>
    <translation>La recherche de mises à jour a échoué</translation>
  </message>
  <message>
    <source>Close</source>
    <translation>Fermer</translation>
  </message>
  <message>
    <source>Closes this window without leaving an address.</source>
    <translation>Ferme cette fenêtre sans laisser d’adresse.</translation>
  </message>
  <message>
    <source>Closes this window. Quorvane goes on in the panel.</source>
    <translation>Ferme cette fenêtre. Quorvane continue dans le tableau de bord.</translation>
  </message>
  <message>
    <source>Dims the screen</source>
    <translation>Assombrit l’écran</translation>
  </message>
  <message>
    <source>E-mail address</source>
    <translation>Adresse e-mail</translation>
  </message>
  <message>
    <source>Ends it when you plug in</source>
    <translation>L’arrête quand vous branchez le secteur</translation>
  </message>
  <message>
    <source>Get Started</source>
    <translation>Commencer</translation>
  </message>
  <message>
    <source>Hear of new versions</source>
    <translation>Être informé des nouvelles versions</translation>
  </message>
  <message>
    <source>Install it with your system's software updates.</source>
    <translation>Installez-le avec les mises à jour logicielles de votre système.</translation>
  </message>
  <message>
    <source>It was not installed from a package. Get a newer one where you got it.</source>
    <translation>Elle n’a pas été installée depuis un paquet. Récupérez-en une plus récente là où vous l’avez obtenue.</translation>
  </message>
  <message>
    <source>LOW POWER MODE STARTS AT %d%%</source>
    <translation>LE MODE ÉCONOMIE DÉMARRE À %d%%</translation>
  </message>
  <message>
    <source>Leave your e-mail address if we may write to you about Quorvane.</source>
    <translation>Laissez votre adresse e-mail si nous pouvons vous écrire au sujet de Quorvane.</translation>
  </message>
  <message>
    <source>Leaves the address.</source>
    <translation>Laisse l’adresse.</translation>
  </message>
  <message>
    <source>Less Than %d%% Battery Remaining</source>
    <translation>Moins de %d%% de batterie restante</translation>
  </message>
  <message>
    <source>Low Power Mode is On</source>
    <translation>Le mode économie d’énergie est activé</translation>
  </message>
  <message>
    <source>Low Power Mode is on</source>
    <translation>Le mode économie d’énergie est activé</translation>
  </message>
  <message>
    <source>Low Power Mode makes this laptop’s battery last longer.</source>
    <translation>Le mode économie d’énergie prolonge l’autonomie de cet ordinateur.</translation>
  </message>
  <message>
    <source>Low Power Mode starts by itself when the battery runs low.</source>
    <translation>Le mode économie démarre tout seul quand la batterie faiblit.</translation>
  </message>
  <message>
    <source>Low Power Mode starts only when you switch it on.</source>
    <translation>Le mode économie ne démarre que si vous l’activez.</translation>
  </message>
  <message>
    <source>Low power mode is now stopped.</source>
    <translation>Le mode économie d’énergie est maintenant arrêté.</translation>
  </message>
  <message>
    <source>MANUAL START MODE</source>
    <translation>DÉMARRAGE MANUEL</translation>
  </message>
  <message>
    <source>Manual</source>
    <translation>Manuel</translation>
  </message>
  <message>
    <source>News from Quorvane</source>
    <translation>Nouvelles de Quorvane</translation>
  </message>
  <message>
    <source>Not Now</source>
    <translation>Pas maintenant</translation>
  </message>
  <message>
    <source>Not checked for updates</source>
    <translation>Pas de recherche de mises à jour</translation>
  </message>
  <message>
    <source>Open Quorvane Preferences...</source>
    <translation>Ouvrir les préférences de Quorvane…</translation>
  </message>
  <message>
    <source>Puts everything back afterwards</source>
    <translation>Remet tout en place ensuite</translation>
  </message>
  <message>
    <source>Quit</source>
    <translation>Quitter</translation>
  </message>
  <message>
    <source>Quit Quorvane</source>
    <translation>Quitter Quorvane</translation>
  </message>
  <message>
    <source>Quorvane %@ (r%@)</source>
    <translation>Quorvane %@ (r%@)</translation>
  </message>
  <message>
    <source>Quorvane %@ is available</source>
    <translation>Quorvane %@ est disponible</translation>
  </message>
  <message>
    <source>Quorvane already running</source>
    <translation>Quorvane est déjà en cours d’exécution</translation>
  </message>
  <message>
    <source>Quorvane asks you first when the battery runs low.</source>
    <translation>Quorvane vous demande d’abord quand la batterie faiblit.</translation>
  </message>
  <message>
    <source>Quorvane is up to date</source>
    <translation>Quorvane est à jour</translation>
  </message>
  <message>
    <source>Quorvane's Settings</source>
    <translation>Réglages de Quorvane</translation>
  </message>
  <message>
    <source>Quorvane’s picture</source>
    <translation>L’image de Quorvane</translation>
  </message>
  <message>
    <source>Send Feedback</source>
    <translation>Envoyer un commentaire</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Réglages</translation>
  </message>
  <message>
    <source>Slows the processor down</source>
    <translation>Ralentit le processeur</translation>
  </message>
  <message>
    <source>SplashWindowController</source>
    <translation>SplashWindowController</translation>
  </message>
  <message>
    <source>Start</source>
    <translation>Démarrer</translation>
  </message>
  <message>
    <source>Start Low Power Mode Now</source>
    <translation>Démarrer le mode économie d’énergie</translation>
  </message>
  <message>
    <source>Start Low Power Mode?</source>
    <translation>Démarrer le mode économie d’énergie ?</translation>
  </message>
  <message>
    <source>Stopping Low Power Mode</source>
    <translation>Arrêt du mode économie d’énergie</translation>
  </message>
  <message>
    <source>Submit</source>
    <translation>Envoyer</translation>
  </message>
  <message>
    <source>Tells you how many minutes it saved</source>
    <translation>Vous dit combien de minutes sont gagnées</translation>
  </message>
  <message>
    <source>This copy of Quorvane is not updated by your system</source>
    <translation>Cette copie de Quorvane n’est pas mise à jour par votre système</translation>
  </message>
  <message>
    <source>Updates come with your system</source>
    <translation>Les mises à jour viennent avec votre système</translation>
  </message>
  <message>
    <source>Welcome to Quorvane</source>
    <translation>Bienvenue dans Quorvane</translation>
  </message>
  <message>
    <source>What Low Power Mode does, and the three ways in which it can start.</source>
    <translation>Ce que fait le mode économie d’énergie, et ses trois façons de démarrer.</translation>
  </message>
  <message>
    <source>What Quorvane does</source>
    <translation>Ce que fait Quorvane</translation>
  </message>
  <message>
    <source>Where we may write to you about Quorvane.</source>
    <translation>Où nous pouvons vous écrire au sujet de Quorvane.</translation>
  </message>
  <message>
    <source>While Low Power Mode is on, Quorvane …</source>
    <translation>En mode économie d’énergie, Quorvane …</translation>
  </message>
  <message>
    <source>You choose how it starts</source>
    <translation>Vous choisissez comment il démarre</translation>
  </message>
  <message>
    <source>You find Quorvane in the panel. Its menu starts and stops Low Power Mode.</source>
    <translation>Quorvane se trouve dans le tableau de bord. Son menu démarre et arrête le mode économie.</translation>
  </message>
  <message>
    <source>Your Processor is Draining Battery</source>
    <translation>Votre processeur vide la batterie</translation>
  </message>
  <message>
    <source>Your computer is now plugged in.</source>
    <translation>Votre ordinateur est maintenant branché.</translation>
  </message>
  <message>
    <source>Your connection is metered. Try again on another one.</source>
    <translation>Votre connexion est limitée. Réessayez avec une autre.</translation>
  </message>
  <message>
    <source>Your distribution delivers updates of Quorvane.</source>
    <translation>Votre distribution fournit les mises à jour de Quorvane.</translation>
  </message>
  <message>
    <source>name@example.org</source>
    <translation>nom@example.org</translation>
  </message>
  <message numerus="yes">
    <source>You saved %d minutes of battery!</source>
    <translation>
      <numerusform>Vous avez économisé %d minute de batterie !</numerusform>
      <numerusform>Vous avez économisé %d minutes de batterie !</numerusform>
    </translation>
  </message>
</context>
</TS>
