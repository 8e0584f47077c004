<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-FileCopyrightText: The Patchloom authors -->
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="zh_CN" sourcelanguage="en">
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
        <translation>输入文件</translation>
    </message>
    <message>
        <source>No file selected</source>
        <comment>input file filename display</comment>
        <translation>未选择文件</translation>
    </message>
    <message>
        <source>Open...</source>
        <comment>Button which opens the input file</comment>
        <translation>打开...</translation>
    </message>
    <message>
        <source>Name</source>
        <comment>name label</comment>
        <translation>名称</translation>
    </message>
    <message>
        <source>New Chart</source>
        <comment>first chart name</comment>
        <translation>新色卡</translation>
    </message>
    <message>
        <source>Device</source>
        <comment>device label</comment>
        <translation>测量仪器</translation>
    </message>
    <message>
        <source>Page size</source>
        <comment>page size label</comment>
        <translation>页面尺寸</translation>
    </message>
    <message>
        <source>Page boundaries TRBL</source>
        <comment>page boundaries label</comment>
        <translation>页边距（上右下左）</translation>
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
        <translation>裁剪到内容</translation>
    </message>
    <message>
        <source>Create Files...</source>
        <comment>Button which creates the files</comment>
        <translation>创建文件...</translation>
    </message>
    <message>
        <source>Warning: The output files will contain gaps.</source>
        <comment>gap warning message</comment>
        <translation>警告：输出文件将包含间隙。</translation>
    </message>
    <message>
        <source>Ok</source>
        <comment>OK-Button for warn-dialog</comment>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <comment>Cancel-Button for warn-dialog</comment>
        <translation>取消</translation>
    </message>
    <message>
        <source>Please select a directory.</source>
        <comment>Save dialog text</comment>
        <translation>请选择一个文件夹。</translation>
    </message>
    <message>
        <source>Creating files...</source>
        <comment>creating files message</comment>
        <translation>正在创建文件...</translation>
    </message>
    <message>
        <source>Page width in mm</source>
        <comment>page width, for screen readers</comment>
        <translation>页面宽度（毫米）</translation>
    </message>
    <message>
        <source>Page height in mm</source>
        <comment>page height, for screen readers</comment>
        <translation>页面高度（毫米）</translation>
    </message>
    <message>
        <source>Top boundary in mm</source>
        <comment>top margin, for screen readers</comment>
        <translation>上边距（毫米）</translation>
    </message>
    <message>
        <source>Right boundary in mm</source>
        <comment>right margin, for screen readers</comment>
        <translation>右边距（毫米）</translation>
    </message>
    <message>
        <source>Bottom boundary in mm</source>
        <comment>bottom margin, for screen readers</comment>
        <translation>下边距（毫米）</translation>
    </message>
    <message>
        <source>Left boundary in mm</source>
        <comment>left margin, for screen readers</comment>
        <translation>左边距（毫米）</translation>
    </message>
    <message>
        <source>Patch size in mm</source>
        <comment>patch size slider, for screen readers</comment>
        <translation>色块尺寸（毫米）</translation>
    </message>
    <message>
        <source>The chart contains gaps</source>
        <comment>warning sign, for screen readers</comment>
        <translation>色卡包含间隙</translation>
    </message>
    <message>
        <source>Chart preview</source>
        <comment>preview, for screen readers</comment>
        <translation>色卡预览</translation>
    </message>
</context>
</TS>
