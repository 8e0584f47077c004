<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-FileCopyrightText: The Patchloom authors -->
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="ja_JP" sourcelanguage="en">
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
        <translation>入力ファイル</translation>
    </message>
    <message>
        <source>No file selected</source>
        <comment>input file filename display</comment>
        <translation>ファイル未選択</translation>
    </message>
    <message>
        <source>Open...</source>
        <comment>Button which opens the input file</comment>
        <translation>開く...</translation>
    </message>
    <message>
        <source>Name</source>
        <comment>name label</comment>
        <translation>名前</translation>
    </message>
    <message>
        <source>New Chart</source>
        <comment>first chart name</comment>
        <translation>新しいチャート</translation>
    </message>
    <message>
        <source>Device</source>
        <comment>device label</comment>
        <translation>測定器</translation>
    </message>
    <message>
        <source>Page size</source>
        <comment>page size label</comment>
        <translation>用紙サイズ</translation>
    </message>
    <message>
        <source>Page boundaries TRBL</source>
        <comment>page boundaries label</comment>
        <translation>余白 (上右下左)</translation>
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
        <translation>内容に合わせて切り取る</translation>
    </message>
    <message>
        <source>Create Files...</source>
        <comment>Button which creates the files</comment>
        <translation>ファイルを作成...</translation>
    </message>
    <message>
        <source>Warning: The output files will contain gaps.</source>
        <comment>gap warning message</comment>
        <translation>警告: 出力ファイルには隙間が入ります。</translation>
    </message>
    <message>
        <source>Ok</source>
        <comment>OK-Button for warn-dialog</comment>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <comment>Cancel-Button for warn-dialog</comment>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Please select a directory.</source>
        <comment>Save dialog text</comment>
        <translation>フォルダーを選択してください。</translation>
    </message>
    <message>
        <source>Creating files...</source>
        <comment>creating files message</comment>
        <translation>ファイルを作成しています...</translation>
    </message>
    <message>
        <source>Page width in mm</source>
        <comment>page width, for screen readers</comment>
        <translation>用紙の幅 (mm)</translation>
    </message>
    <message>
        <source>Page height in mm</source>
        <comment>page height, for screen readers</comment>
        <translation>用紙の高さ (mm)</translation>
    </message>
    <message>
        <source>Top boundary in mm</source>
        <comment>top margin, for screen readers</comment>
        <translation>上の余白 (mm)</translation>
    </message>
    <message>
        <source>Right boundary in mm</source>
        <comment>right margin, for screen readers</comment>
        <translation>右の余白 (mm)</translation>
    </message>
    <message>
        <source>Bottom boundary in mm</source>
        <comment>bottom margin, for screen readers</comment>
        <translation>下の余白 (mm)</translation>
    </message>
    <message>
        <source>Left boundary in mm</source>
        <comment>left margin, for screen readers</comment>
        <translation>左の余白 (mm)</translation>
    </message>
    <message>
        <source>Patch size in mm</source>
        <comment>patch size slider, for screen readers</comment>
        <translation>パッチの大きさ (mm)</translation>
    </message>
    <message>
        <source>The chart contains gaps</source>
        <comment>warning sign, for screen readers</comment>
        <translation>チャートに隙間があります</translation>
    </message>
    <message>
        <source>Chart preview</source>
        <comment>preview, for screen readers</comment>
        <translation>チャートのプレビュー</translation>
    </message>
</context>
</TS>
