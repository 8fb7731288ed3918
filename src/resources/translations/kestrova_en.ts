<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>Run</name>
    <message numerus="yes">
        <source>%Ln file(s) found</source>
        <translation>
            <numerusform>%Ln file found</numerusform>
            <numerusform>%Ln files found</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %Ln file(s)</source>
        <translation>
            <numerusform>%1 of %Ln file</numerusform>
            <numerusform>%1 of %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>About %Ln minute(s) left</source>
        <translation>
            <numerusform>About %Ln minute left</numerusform>
            <numerusform>About %Ln minutes left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>About %Ln hour(s) left</source>
        <translation>
            <numerusform>About %Ln hour left</numerusform>
            <numerusform>About %Ln hours left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) written.</source>
        <translation>
            <numerusform>%Ln file written.</numerusform>
            <numerusform>%Ln files written.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) could not be written.</source>
        <translation>
            <numerusform>%Ln file could not be written.</numerusform>
            <numerusform>%Ln files could not be written.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) were left out, as another file has their name.</source>
        <translation>
            <numerusform>%Ln file was left out, as another file has its name.</numerusform>
            <numerusform>%Ln files were left out, as other files have their names.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) were in the target already.</source>
        <translation>
            <numerusform>%Ln file was in the target already.</numerusform>
            <numerusform>%Ln files were in the target already.</numerusform>
        </translation>
    </message>
</context>
</TS>
