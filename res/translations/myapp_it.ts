<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-FileCopyrightText: The Patchloom authors -->
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="it_IT" sourcelanguage="en">
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
        <translation>File di ingresso</translation>
    </message>
    <message>
        <source>No file selected</source>
        <comment>input file filename display</comment>
        <translation>Nessun file selezionato</translation>
    </message>
    <message>
        <source>Open...</source>
        <comment>Button which opens the input file</comment>
        <translation>Apri...</translation>
    </message>
    <message>
        <source>Name</source>
        <comment>name label</comment>
        <translation>Nome</translation>
    </message>
    <message>
        <source>New Chart</source>
        <comment>first chart name</comment>
        <translation>Nuova carta</translation>
    </message>
    <message>
        <source>Device</source>
        <comment>device label</comment>
        <translation>Strumento</translation>
    </message>
    <message>
        <source>Page size</source>
        <comment>page size label</comment>
        <translation>Formato pagina</translation>
    </message>
    <message>
        <source>Page boundaries TRBL</source>
        <comment>page boundaries label</comment>
        <translation>Margini ADBS</translation>
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
        <translation>Ritaglia al contenuto</translation>
    </message>
    <message>
        <source>Create Files...</source>
        <comment>Button which creates the files</comment>
        <translation>Crea i file...</translation>
    </message>
    <message>
        <source>Warning: The output files will contain gaps.</source>
        <comment>gap warning message</comment>
        <translation>Attenzione: i file conterranno degli spazi.</translation>
    </message>
    <message>
        <source>Ok</source>
        <comment>OK-Button for warn-dialog</comment>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <comment>Cancel-Button for warn-dialog</comment>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Please select a directory.</source>
        <comment>Save dialog text</comment>
        <translation>Selezionare una cartella.</translation>
    </message>
    <message>
        <source>Creating files...</source>
        <comment>creating files message</comment>
        <translation>Creazione dei file...</translation>
    </message>
    <message>
        <source>Page width in mm</source>
        <comment>page width, for screen readers</comment>
        <translation>Larghezza della pagina in mm</translation>
    </message>
    <message>
        <source>Page height in mm</source>
        <comment>page height, for screen readers</comment>
        <translation>Altezza della pagina in mm</translation>
    </message>
    <message>
        <source>Top boundary in mm</source>
        <comment>top margin, for screen readers</comment>
        <translation>Margine superiore in mm</translation>
    </message>
    <message>
        <source>Right boundary in mm</source>
        <comment>right margin, for screen readers</comment>
        <translation>Margine destro in mm</translation>
    </message>
    <message>
        <source>Bottom boundary in mm</source>
        <comment>bottom margin, for screen readers</comment>
        <translation>Margine inferiore in mm</translation>
    </message>
    <message>
        <source>Left boundary in mm</source>
        <comment>left margin, for screen readers</comment>
        <translation>Margine sinistro in mm</translation>
    </message>
    <message>
        <source>Patch size in mm</source>
        <comment>patch size slider, for screen readers</comment>
        <translation>Dimensione dei campi in mm</translation>
    </message>
    <message>
        <source>The chart contains gaps</source>
        <comment>warning sign, for screen readers</comment>
        <translation>La carta contiene spazi</translation>
    </message>
    <message>
        <source>Chart preview</source>
        <comment>preview, for screen readers</comment>
        <translation>Anteprima della carta</translation>
    </message>
</context>
</TS>
