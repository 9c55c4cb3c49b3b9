<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>Unknown Razer Device</source>
        <translation>Unknown Razer Device</translation>
    </message>
</context>
</TS>
