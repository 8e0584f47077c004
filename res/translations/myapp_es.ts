<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-FileCopyrightText: The Patchloom authors -->
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="es_ES" sourcelanguage="en">
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
        <translation>Archivo de entrada</translation>
    </message>
    <message>
        <source>No file selected</source>
        <comment>input file filename display</comment>
        <translation>Ningún archivo elegido</translation>
    </message>
    <message>
        <source>Open...</source>
        <comment>Button which opens the input file</comment>
        <translation>Abrir...</translation>
    </message>
    <message>
        <source>Name</source>
        <comment>name label</comment>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>New Chart</source>
        <comment>first chart name</comment>
        <translation>Nueva carta</translation>
    </message>
    <message>
        <source>Device</source>
        <comment>device label</comment>
        <translation>Instrumento</translation>
    </message>
    <message>
        <source>Page size</source>
        <comment>page size label</comment>
        <translation>Tamaño de página</translation>
    </message>
    <message>
        <source>Page boundaries TRBL</source>
        <comment>page boundaries label</comment>
        <translation>Márgenes Ar/De/Ab/Iz</translation>
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
        <translation>Recortar al contenido</translation>
    </message>
    <message>
        <source>Create Files...</source>
        <comment>Button which creates the files</comment>
        <translation>Crear archivos...</translation>
    </message>
    <message>
        <source>Warning: The output files will contain gaps.</source>
        <comment>gap warning message</comment>
        <translation>Aviso: los archivos contendrán separaciones.</translation>
    </message>
    <message>
        <source>Ok</source>
        <comment>OK-Button for warn-dialog</comment>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <comment>Cancel-Button for warn-dialog</comment>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Please select a directory.</source>
        <comment>Save dialog text</comment>
        <translation>Elija una carpeta.</translation>
    </message>
    <message>
        <source>Creating files...</source>
        <comment>creating files message</comment>
        <translation>Creando archivos...</translation>
    </message>
    <message>
        <source>Page width in mm</source>
        <comment>page width, for screen readers</comment>
        <translation>Anchura de página en mm</translation>
    </message>
    <message>
        <source>Page height in mm</source>
        <comment>page height, for screen readers</comment>
        <translation>Altura de página en mm</translation>
    </message>
    <message>
        <source>Top boundary in mm</source>
        <comment>top margin, for screen readers</comment>
        <translation>Margen superior en mm</translation>
    </message>
    <message>
        <source>Right boundary in mm</source>
        <comment>right margin, for screen readers</comment>
        <translation>Margen derecho en mm</translation>
    </message>
    <message>
        <source>Bottom boundary in mm</source>
        <comment>bottom margin, for screen readers</comment>
        <translation>Margen inferior en mm</translation>
    </message>
    <message>
        <source>Left boundary in mm</source>
        <comment>left margin, for screen readers</comment>
        <translation>Margen izquierdo en mm</translation>
    </message>
    <message>
        <source>Patch size in mm</source>
        <comment>patch size slider, for screen readers</comment>
        <translation>Tamaño de los parches en mm</translation>
    </message>
    <message>
        <source>The chart contains gaps</source>
        <comment>warning sign, for screen readers</comment>
        <translation>La carta contiene separaciones</translation>
    </message>
    <message>
        <source>Chart preview</source>
        <comment>preview, for screen readers</comment>
        <translation>Vista previa de la carta</translation>
    </message>
</context>
</TS>
