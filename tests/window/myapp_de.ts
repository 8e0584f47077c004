<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-FileCopyrightText: The Patchloom authors -->
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="de_DE">
<context><name>Controller</name>
    <message><source>Input File</source><comment>input file label</comment><translation>Eingabedatei</translation></message>
    <message><source>New Chart</source><comment>first chart name</comment><translation>Neue Karte</translation></message>
    <message><source>Name</source><comment>name label</comment><translation>Bezeichnung</translation></message>
    <message><source>Device</source><comment>device label</comment><translation>Gerät</translation></message>
    <message><source>Cancel</source><comment>another button</comment><translation>Verwerfen</translation></message>
    <message><source>Cancel</source><comment>Cancel-Button for warn-dialog</comment><translation>Abbrechen</translation></message>
</context>
</TS>
