<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl_PL" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>Open Kelmoth</source>
        <translation>Otwórz Kelmoth</translation>
    </message>
    <message>
        <source>About Kelmoth</source>
        <translation>O programie Kelmoth</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Zakończ</translation>
    </message>
    <message>
        <source>No Device</source>
        <translation>Brak urządzenia</translation>
    </message>
    <message>
        <source>Bluetooth connected: %@</source>
        <translation>Połączono przez Bluetooth: %@</translation>
    </message>
    <message>
        <source>Version %@</source>
        <translation>Wersja %@</translation>
    </message>
    <message>
        <source>Unknown Razer Device</source>
        <translation>Nieznane urządzenie Razer</translation>
    </message>
    <message>
        <source>Stage</source>
        <translation>Poziom</translation>
    </message>
    <message>
        <source>Color preset %d</source>
        <translation>Gotowy kolor %d</translation>
    </message>
    <message>
        <source>Launch at Login could not be changed: %@</source>
        <translation>Nie udało się zmienić uruchamiania przy logowaniu: %@</translation>
    </message>
    <message>
        <source>Move Kelmoth to the Applications folder to launch it at login.</source>
        <translation>Przenieś Kelmoth do folderu aplikacji, aby uruchamiać go przy logowaniu.</translation>
    </message>
    <message>
        <source>Profile %d</source>
        <translation>Profil %d</translation>
    </message>
    <message>
        <source>Macro: %@</source>
        <translation>Makro: %@</translation>
    </message>
    <message>
        <source>USB cable</source>
        <translation>Kabel USB</translation>
    </message>
    <message>
        <source>2.4 GHz receiver</source>
        <translation>Odbiornik 2,4 GHz</translation>
    </message>
    <message>
        <source>Left Click</source>
        <translation>Lewy przycisk</translation>
    </message>
    <message>
        <source>Right Click</source>
        <translation>Prawy przycisk</translation>
    </message>
    <message>
        <source>Middle Click</source>
        <translation>Środkowy przycisk</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Dalej</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Wstecz</translation>
    </message>
    <message>
        <source>Scroll Up</source>
        <translation>Przewiń w górę</translation>
    </message>
    <message>
        <source>Scroll Down</source>
        <translation>Przewiń w dół</translation>
    </message>
    <message>
        <source>Double Click</source>
        <translation>Podwójne kliknięcie</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>Wyłączony</translation>
    </message>
    <message>
        <source>DPI Cycle</source>
        <translation>Przełączanie DPI</translation>
    </message>
    <message>
        <source>Profile Switch</source>
        <translation>Przełączanie profilu</translation>
    </message>
    <message>
        <source>Hypershift</source>
        <translation>Hypershift</translation>
    </message>
    <message>
        <source>Keyboard Key</source>
        <translation>Klawisz klawiatury</translation>
    </message>
    <message>
        <source>Wheel Mode Toggle</source>
        <translation>Przełączanie trybu kółka</translation>
    </message>
    <message>
        <source>Custom function</source>
        <translation>Funkcja niestandardowa</translation>
    </message>
    <message>
        <source>DPI Button</source>
        <translation>Przycisk DPI</translation>
    </message>
    <message>
        <source>Wheel Mode Button</source>
        <translation>Przycisk trybu kółka</translation>
    </message>
    <message>
        <source>Clutch</source>
        <translation>Sprzęgło</translation>
    </message>
    <message>
        <source>Bottom Button</source>
        <translation>Przycisk na spodzie</translation>
    </message>
</context>
</TS>
