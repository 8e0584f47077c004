<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-FileCopyrightText: The Patchloom authors -->
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>Controller</name>
    <message>
        <source>Patchloom</source>
        <comment>Window title</comment>
        <translation>Patchloom</translation>
    </message>
    <message>
        <source>Input File</source>
        <comment>input file label</comment>
        <translation>Fichier d’entrée</translation>
    </message>
    <message>
        <source>No file selected</source>
        <comment>input file filename display</comment>
        <translation>Aucun fichier sélectionné</translation>
    </message>
    <message>
        <source>Open...</source>
        <comment>Button which opens the input file</comment>
        <translation>Ouvrir...</translation>
    </message>
    <message>
        <source>Name</source>
        <comment>name label</comment>
        <translation>Nom</translation>
    </message>
    <message>
        <source>New Chart</source>
        <comment>first chart name</comment>
        <translation>Nouvelle charte</translation>
    </message>
    <message>
        <source>Device</source>
        <comment>device label</comment>
        <translation>Appareil</translation>
    </message>
    <message>
        <source>Page size</source>
        <comment>page size label</comment>
        <translation>Format de page</translation>
    </message>
    <message>
        <source>Page boundaries TRBL</source>
        <comment>page boundaries label</comment>
        <translation>Marges HDBG</translation>
    </message>
    <message>
        <source>EPS</source>
        <comment>EPS radio button</comment>
        <translation>EPS</translation>
    </message>
    <message>
        <source>TIFF</source>
        <comment>TIFF radio button</comment>
        <translation>TIFF</translation>
    </message>
    <message>
        <source>Clip to content</source>
        <comment>ClipToContent Checkbox</comment>
        <translation>Rogner au contenu</translation>
    </message>
    <message>
        <source>Create Files...</source>
        <comment>Button which creates the files</comment>
        <translation>Créer les fichiers...</translation>
    </message>
    <message>
        <source>Warning: The output files will contain gaps.</source>
        <comment>gap warning message</comment>
        <translation>Attention : les fichiers contiendront des espaces.</translation>
    </message>
    <message>
        <source>Ok</source>
        <comment>OK-Button for warn-dialog</comment>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <comment>Cancel-Button for warn-dialog</comment>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Please select a directory.</source>
        <comment>Save dialog text</comment>
        <translation>Veuillez choisir un dossier.</translation>
    </message>
    <message>
        <source>Creating files...</source>
        <comment>creating files message</comment>
        <translation>Création des fichiers...</translation>
    </message>
    <message>
        <source>Page width in mm</source>
        <comment>page width, for screen readers</comment>
        <translation>Largeur de page en mm</translation>
    </message>
    <message>
        <source>Page height in mm</source>
        <comment>page height, for screen readers</comment>
        <translation>Hauteur de page en mm</translation>
    </message>
    <message>
        <source>Top boundary in mm</source>
        <comment>top margin, for screen readers</comment>
        <translation>Marge du haut en mm</translation>
    </message>
    <message>
        <source>Right boundary in mm</source>
        <comment>right margin, for screen readers</comment>
        <translation>Marge de droite en mm</translation>
    </message>
    <message>
        <source>Bottom boundary in mm</source>
        <comment>bottom margin, for screen readers</comment>
        <translation>Marge du bas en mm</translation>
    </message>
    <message>
        <source>Left boundary in mm</source>
        <comment>left margin, for screen readers</comment>
        <translation>Marge de gauche en mm</translation>
    </message>
    <message>
        <source>Patch size in mm</source>
        <comment>patch size slider, for screen readers</comment>
        <translation>Taille des plages en mm</translation>
    </message>
    <message>
        <source>The chart contains gaps</source>
        <comment>warning sign, for screen readers</comment>
        <translation>La charte contient des espaces</translation>
    </message>
    <message>
        <source>Chart preview</source>
        <comment>preview, for screen readers</comment>
        <translation>Aperçu de la charte</translation>
    </message>
</context>
</TS>
