<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-FileCopyrightText: The Patchloom authors -->
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="de_DE">
<context><name>QFileDialog</name>
    <message><source>Look in:</source><translation>Suchen in:</translation></message>
</context>
<context><name>Controller</name>
    <message><source>Name</source><comment>name label</comment><translation>Nicht dieser</translation></message>
</context>
</TS>
