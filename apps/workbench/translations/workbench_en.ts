<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>workbench::FindBar</name>
    <message numerus="yes">
        <source>%1 matches replaced</source>
        <translation>
            <numerusform>%1 match replaced</numerusform>
            <numerusform>%1 matches replaced</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>workbench::FilesPanel</name>
    <message numerus="yes">
        <source>%1 files</source>
        <translation>
            <numerusform>%1 file</numerusform>
            <numerusform>%1 files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1; %n unreadable folders</source>
        <translation>
            <numerusform>%1; %n unreadable folder</numerusform>
            <numerusform>%1; %n unreadable folders</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files are too many to open at once.</source>
        <translation>
            <numerusform>%n file is too many to open at once.</numerusform>
            <numerusform>%n files are too many to open at once.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>At most %n files can be opened at once.</source>
        <translation>
            <numerusform>At most %n file can be opened at once.</numerusform>
            <numerusform>At most %n files can be opened at once.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>workbench::FindInFilesDialog</name>
    <message numerus="yes">
        <source>%1 files</source>
        <translation>
            <numerusform>%1 file</numerusform>
            <numerusform>%1 files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 lines</source>
        <translation>
            <numerusform>%1 line</numerusform>
            <numerusform>%1 lines</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>workbench::DocumentRecovery</name>
    <message numerus="yes">
        <source>%n documents recovered</source>
        <translation>
            <numerusform>%n document recovered</numerusform>
            <numerusform>%n documents recovered</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>workbench::SaveChangesDialog</name>
    <message numerus="yes">
        <source>Save the changes to %n documents?</source>
        <translation>
            <numerusform>Save the changes to %n document?</numerusform>
            <numerusform>Save the changes to %n documents?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>workbench::TestPlan</name>
    <message numerus="yes">
        <source>The file declares %n rows but contains more.</source>
        <translation>
            <numerusform>The file declares %n row but contains more.</numerusform>
            <numerusform>The file declares %n rows but contains more.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>workbench::DocumentOpener</name>
    <message numerus="yes">
        <source>%n files can&apos;t be opened.</source>
        <translation>
            <numerusform>%n file can&apos;t be opened.</numerusform>
            <numerusform>%n files can&apos;t be opened.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files are too many to open at once.</source>
        <translation>
            <numerusform>%n file is too many to open at once.</numerusform>
            <numerusform>%n files are too many to open at once.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>At most %n files can be opened at once.</source>
        <translation>
            <numerusform>At most %n file can be opened at once.</numerusform>
            <numerusform>At most %n files can be opened at once.</numerusform>
        </translation>
    </message>
</context>
</TS>
