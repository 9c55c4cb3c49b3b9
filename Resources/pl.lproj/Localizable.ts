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
        <source>DPI</source>
        <translation>DPI</translation>
    </message>
    <message>
        <source>RGB</source>
        <translation>RGB</translation>
    </message>
    <message>
        <source>Buttons</source>
        <translation>Przyciski</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Ustawienia</translation>
    </message>
    <message>
        <source>No Device</source>
        <translation>Brak urządzenia</translation>
    </message>
    <message>
        <source>No connection</source>
        <translation>Brak połączenia</translation>
    </message>
    <message>
        <source>USB cable</source>
        <translation>Kabel USB</translation>
    </message>
    <message>
        <source>2.4 GHz receiver</source>
        <translation>Odbiornik 2,4 GHz</translation>
    </message>
    <message>
        <source>USB</source>
        <translation>USB</translation>
    </message>
    <message>
        <source>Bluetooth</source>
        <translation>Bluetooth</translation>
    </message>
    <message>
        <source>Unknown Razer Device</source>
        <translation>Nieznane urządzenie Razer</translation>
    </message>
    <message>
        <source>%lld%%</source>
        <translation>%lld%%</translation>
    </message>
    <message>
        <source>Kelmoth v%@</source>
        <translation>Kelmoth v%@</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>Bateria</translation>
    </message>
    <message>
        <source>Charging</source>
        <translation>Ładowanie</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Strony</translation>
    </message>
    <message>
        <source>No Device Connected</source>
        <translation>Nie podłączono urządzenia</translation>
    </message>
    <message>
        <source>Connect Razer Basilisk V3 series
via USB dongle (2.4GHz)</source>
        <translation>Podłącz mysz z serii Razer Basilisk V3
za pomocą odbiornika USB (2,4 GHz)</translation>
    </message>
    <message>
        <source>Bluetooth configuration is not available in this version</source>
        <translation>Konfiguracja przez Bluetooth nie jest dostępna w tej wersji</translation>
    </message>
    <message>
        <source>Bluetooth connected: %@</source>
        <translation>Połączono przez Bluetooth:
%@</translation>
    </message>
    <message>
        <source>Kelmoth cannot configure this mouse over Bluetooth in this version.</source>
        <translation>W tej wersji Kelmoth nie może konfigurować tej myszy przez Bluetooth.</translation>
    </message>
    <message>
        <source>Use USB or a 2.4 GHz receiver to configure this mouse.</source>
        <translation>Aby skonfigurować tę mysz, użyj kabla USB lub odbiornika 2,4 GHz.</translation>
    </message>
    <message>
        <source>Use the 2.4 GHz receiver to configure this mouse.</source>
        <translation>Skonfiguruj tę mysz przez odbiornik 2,4 GHz.</translation>
    </message>
    <message>
        <source>Unsupported Device</source>
        <translation>Nieobsługiwane urządzenie</translation>
    </message>
    <message>
        <source>This app supports only:
• Basilisk V3
• Basilisk V3 Pro
• Basilisk V3 X HyperSpeed</source>
        <translation>Ten program obsługuje tylko:
• Basilisk V3
• Basilisk V3 Pro
• Basilisk V3 X HyperSpeed</translation>
    </message>
    <message>
        <source>Stage</source>
        <translation>Poziom</translation>
    </message>
    <message>
        <source>STAGES</source>
        <translation>POZIOMY</translation>
    </message>
    <message>
        <source>PRESETS</source>
        <translation>GOTOWE WARTOŚCI</translation>
    </message>
    <message>
        <source>Tap a stage to change DPI</source>
        <translation>Kliknij poziom, aby zmienić DPI</translation>
    </message>
    <message>
        <source>Scroll Wheel</source>
        <translation>Kółko</translation>
    </message>
    <message>
        <source>Logo</source>
        <translation>Logo</translation>
    </message>
    <message>
        <source>Underglow</source>
        <translation>Spód</translation>
    </message>
    <message>
        <source>DPI Light</source>
        <translation>Dioda DPI</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Wyłączone</translation>
    </message>
    <message>
        <source>Static</source>
        <translation>Statyczne</translation>
    </message>
    <message>
        <source>Breathe</source>
        <translation>Oddychanie</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>Wave</source>
        <translation>Fala</translation>
    </message>
    <message>
        <source>Reactive</source>
        <translation>Reaktywne</translation>
    </message>
    <message>
        <source>Color preset %d</source>
        <translation>Gotowy kolor %d</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Biały</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Odcień</translation>
    </message>
    <message>
        <source>Lighting zone</source>
        <translation>Strefa podświetlenia</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Jasność</translation>
    </message>
    <message>
        <source>Tap button to change mapping</source>
        <translation>Kliknij przycisk, aby zmienić jego funkcję</translation>
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
        <source>DPI Button</source>
        <translation>Przycisk DPI</translation>
    </message>
    <message>
        <source>Wheel Mode Button</source>
        <translation>Przycisk trybu kółka</translation>
    </message>
    <message>
        <source>Scroll Up</source>
        <translation>Przewijanie w górę</translation>
    </message>
    <message>
        <source>Scroll Down</source>
        <translation>Przewijanie w dół</translation>
    </message>
    <message>
        <source>Clutch</source>
        <translation>Przycisk pod kciukiem</translation>
    </message>
    <message>
        <source>Bottom Button</source>
        <translation>Przycisk na spodzie</translation>
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
        <translation>Przełączanie profili</translation>
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
        <translation>Zmiana trybu kółka</translation>
    </message>
    <message>
        <source>Custom function</source>
        <translation>Funkcja niestandardowa</translation>
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
        <source>Pick a key (optional modifiers first):</source>
        <translation>Zaznacz modyfikatory (opcjonalnie) i wybierz klawisz:</translation>
    </message>
    <message>
        <source>⌃ Ctrl</source>
        <translation>⌃ Ctrl</translation>
    </message>
    <message>
        <source>⌥ Alt</source>
        <translation>⌥ Alt</translation>
    </message>
    <message>
        <source>⇧ Shift</source>
        <translation>⇧ Shift</translation>
    </message>
    <message>
        <source>⌘ Cmd</source>
        <translation>⌘ Cmd</translation>
    </message>
    <message>
        <source>space</source>
        <translation>spacja</translation>
    </message>
    <message>
        <source>up</source>
        <translation>↑</translation>
    </message>
    <message>
        <source>down</source>
        <translation>↓</translation>
    </message>
    <message>
        <source>left</source>
        <translation>←</translation>
    </message>
    <message>
        <source>right</source>
        <translation>→</translation>
    </message>
    <message>
        <source>up arrow</source>
        <translation>strzałka w górę</translation>
    </message>
    <message>
        <source>down arrow</source>
        <translation>strzałka w dół</translation>
    </message>
    <message>
        <source>left arrow</source>
        <translation>strzałka w lewo</translation>
    </message>
    <message>
        <source>right arrow</source>
        <translation>strzałka w prawo</translation>
    </message>
    <message>
        <source>Select profile:</source>
        <translation>Wybierz profil:</translation>
    </message>
    <message>
        <source>%lld</source>
        <translation>%lld</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Wygląd</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Jasny</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Ciemny</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Język</translation>
    </message>
    <message>
        <source>System</source>
        <translation>Systemowy</translation>
    </message>
    <message>
        <source>PL · Polski</source>
        <translation>PL · Polski</translation>
    </message>
    <message>
        <source>EN · English</source>
        <translation>EN · English</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Uruchamiaj przy logowaniu</translation>
    </message>
    <message>
        <source>Open Login Items</source>
        <translation>Otwórz ustawienia autostartu</translation>
    </message>
    <message>
        <source>Allow Kelmoth under Login Items in System Settings.</source>
        <translation>W ustawieniach systemu zezwól programowi Kelmoth na autostart.</translation>
    </message>
    <message>
        <source>Move Kelmoth to the Applications folder to launch it at login.</source>
        <translation>Aby uruchamiać Kelmoth przy logowaniu, zainstaluj program w systemie.</translation>
    </message>
    <message>
        <source>Launch at Login could not be changed: %@</source>
        <translation>Nie udało się zmienić ustawienia „Uruchamiaj przy logowaniu”: %@</translation>
    </message>
    <message>
        <source>DEVICE SETTINGS</source>
        <translation>USTAWIENIA URZĄDZENIA</translation>
    </message>
    <message>
        <source>Lift Off Distance</source>
        <translation>Wysokość odrywania</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niska</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Średnia</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Wysoka</translation>
    </message>
    <message>
        <source>Not set</source>
        <translation>Nie ustawiono</translation>
    </message>
    <message>
        <source>Low (1 mm)</source>
        <translation>Niska (1 mm)</translation>
    </message>
    <message>
        <source>Medium (2 mm)</source>
        <translation>Średnia (2 mm)</translation>
    </message>
    <message>
        <source>High (3 mm)</source>
        <translation>Wysoka (3 mm)</translation>
    </message>
    <message>
        <source>Kelmoth</source>
        <translation>Kelmoth</translation>
    </message>
    <message>
        <source>Version %@</source>
        <translation>Wersja %@</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>Funkcje</translation>
    </message>
    <message>
        <source>DPI stages by model</source>
        <translation>Poziomy DPI zależne od modelu</translation>
    </message>
    <message>
        <source>RGB lighting effects &amp; colors</source>
        <translation>Efekty i kolory podświetlenia RGB</translation>
    </message>
    <message>
        <source>Button remapping</source>
        <translation>Zmiana funkcji przycisków</translation>
    </message>
    <message>
        <source>Battery monitoring</source>
        <translation>Monitorowanie baterii</translation>
    </message>
    <message>
        <source>Supported Devices</source>
        <translation>Obsługiwane urządzenia</translation>
    </message>
    <message>
        <source>Not affiliated with Razer Inc.</source>
        <translation>Program nie jest powiązany z firmą Razer Inc.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Zamknij</translation>
    </message>
    <message>
        <source>No device connected</source>
        <translation>Nie podłączono urządzenia</translation>
    </message>
    <message>
        <source>Invalid DPI stage</source>
        <translation>Nieprawidłowy poziom DPI</translation>
    </message>
    <message>
        <source>DPI outside supported range</source>
        <translation>DPI poza obsługiwanym zakresem</translation>
    </message>
    <message>
        <source>Failed to set DPI</source>
        <translation>Nie udało się ustawić DPI</translation>
    </message>
    <message>
        <source>Failed to change DPI stage</source>
        <translation>Nie udało się zmienić poziomu DPI</translation>
    </message>
    <message>
        <source>Failed to set RGB lighting</source>
        <translation>Nie udało się ustawić podświetlenia RGB</translation>
    </message>
    <message>
        <source>Left button always stays Left Click</source>
        <translation>Funkcji lewego przycisku nie można zmienić</translation>
    </message>
    <message>
        <source>Failed to apply button mapping</source>
        <translation>Nie udało się zmienić funkcji przycisku</translation>
    </message>
    <message>
        <source>Button remapped</source>
        <translation>Zmieniono funkcję przycisku</translation>
    </message>
    <message>
        <source>Failed to set lift-off distance</source>
        <translation>Nie udało się ustawić wysokości odrywania</translation>
    </message>
    <message>
        <source>Battery low</source>
        <translation>Niski poziom baterii</translation>
    </message>
    <message>
        <source>Battery almost empty</source>
        <translation>Bateria prawie rozładowana</translation>
    </message>
</context>
</TS>
