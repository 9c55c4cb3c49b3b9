<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>Open Kelmoth</source>
        <translation>Open Kelmoth</translation>
    </message>
    <message>
        <source>About Kelmoth</source>
        <translation>About Kelmoth</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quit</translation>
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
        <translation>Buttons</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>No Device</source>
        <translation>No Device</translation>
    </message>
    <message>
        <source>No connection</source>
        <translation>No connection</translation>
    </message>
    <message>
        <source>USB cable</source>
        <translation>USB cable</translation>
    </message>
    <message>
        <source>2.4 GHz receiver</source>
        <translation>2.4 GHz receiver</translation>
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
        <translation>Unknown Razer Device</translation>
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
        <translation>Battery</translation>
    </message>
    <message>
        <source>Charging</source>
        <translation>Charging</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>No Device Connected</source>
        <translation>No Device Connected</translation>
    </message>
    <message>
        <source>Connect Razer Basilisk V3 series
via USB dongle (2.4GHz)</source>
        <translation>Connect Razer Basilisk V3 series
via USB dongle (2.4GHz)</translation>
    </message>
    <message>
        <source>Bluetooth configuration is not available in this version</source>
        <translation>Bluetooth configuration is not available in this version</translation>
    </message>
    <message>
        <source>Bluetooth connected: %@</source>
        <translation>Bluetooth connected: %@</translation>
    </message>
    <message>
        <source>Kelmoth cannot configure this mouse over Bluetooth in this version.</source>
        <translation>Kelmoth cannot configure this mouse over Bluetooth in this version.</translation>
    </message>
    <message>
        <source>Use USB or a 2.4 GHz receiver to configure this mouse.</source>
        <translation>Use USB or a 2.4 GHz receiver to configure this mouse.</translation>
    </message>
    <message>
        <source>Use the 2.4 GHz receiver to configure this mouse.</source>
        <translation>Use the 2.4 GHz receiver to configure this mouse.</translation>
    </message>
    <message>
        <source>Unsupported Device</source>
        <translation>Unsupported Device</translation>
    </message>
    <message>
        <source>This app supports only:
• Basilisk V3
• Basilisk V3 Pro
• Basilisk V3 X HyperSpeed</source>
        <translation>This app supports only:
• Basilisk V3
• Basilisk V3 Pro
• Basilisk V3 X HyperSpeed</translation>
    </message>
    <message>
        <source>Stage</source>
        <translation>Stage</translation>
    </message>
    <message>
        <source>STAGES</source>
        <translation>STAGES</translation>
    </message>
    <message>
        <source>PRESETS</source>
        <translation>PRESETS</translation>
    </message>
    <message>
        <source>Tap a stage to change DPI</source>
        <translation>Tap a stage to change DPI</translation>
    </message>
    <message>
        <source>Scroll Wheel</source>
        <translation>Scroll Wheel</translation>
    </message>
    <message>
        <source>Logo</source>
        <translation>Logo</translation>
    </message>
    <message>
        <source>Underglow</source>
        <translation>Underglow</translation>
    </message>
    <message>
        <source>DPI Light</source>
        <translation>DPI Light</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Off</translation>
    </message>
    <message>
        <source>Static</source>
        <translation>Static</translation>
    </message>
    <message>
        <source>Breathe</source>
        <translation>Breathe</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spectrum</translation>
    </message>
    <message>
        <source>Wave</source>
        <translation>Wave</translation>
    </message>
    <message>
        <source>Reactive</source>
        <translation>Reactive</translation>
    </message>
    <message>
        <source>Color preset %d</source>
        <translation>Color preset %d</translation>
    </message>
    <message>
        <source>White</source>
        <translation>White</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Hue</translation>
    </message>
    <message>
        <source>Lighting zone</source>
        <translation>Lighting zone</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Brightness</translation>
    </message>
    <message>
        <source>Tap button to change mapping</source>
        <translation>Tap button to change mapping</translation>
    </message>
    <message>
        <source>Left Click</source>
        <translation>Left Click</translation>
    </message>
    <message>
        <source>Right Click</source>
        <translation>Right Click</translation>
    </message>
    <message>
        <source>Middle Click</source>
        <translation>Middle Click</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Forward</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>DPI Button</source>
        <translation>DPI Button</translation>
    </message>
    <message>
        <source>Wheel Mode Button</source>
        <translation>Wheel Mode Button</translation>
    </message>
    <message>
        <source>Scroll Up</source>
        <translation>Scroll Up</translation>
    </message>
    <message>
        <source>Scroll Down</source>
        <translation>Scroll Down</translation>
    </message>
    <message>
        <source>Clutch</source>
        <translation>Clutch</translation>
    </message>
    <message>
        <source>Bottom Button</source>
        <translation>Bottom Button</translation>
    </message>
    <message>
        <source>Double Click</source>
        <translation>Double Click</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>Disabled</translation>
    </message>
    <message>
        <source>DPI Cycle</source>
        <translation>DPI Cycle</translation>
    </message>
    <message>
        <source>Profile Switch</source>
        <translation>Profile Switch</translation>
    </message>
    <message>
        <source>Hypershift</source>
        <translation>Hypershift</translation>
    </message>
    <message>
        <source>Keyboard Key</source>
        <translation>Keyboard Key</translation>
    </message>
    <message>
        <source>Wheel Mode Toggle</source>
        <translation>Wheel Mode Toggle</translation>
    </message>
    <message>
        <source>Custom function</source>
        <translation>Custom function</translation>
    </message>
    <message>
        <source>Profile %d</source>
        <translation>Profile %d</translation>
    </message>
    <message>
        <source>Macro: %@</source>
        <translation>Macro: %@</translation>
    </message>
    <message>
        <source>Pick a key (optional modifiers first):</source>
        <translation>Pick a key (optional modifiers first):</translation>
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
        <translation>space</translation>
    </message>
    <message>
        <source>up</source>
        <translation>up</translation>
    </message>
    <message>
        <source>down</source>
        <translation>down</translation>
    </message>
    <message>
        <source>left</source>
        <translation>left</translation>
    </message>
    <message>
        <source>right</source>
        <translation>right</translation>
    </message>
    <message>
        <source>up arrow</source>
        <translation>up arrow</translation>
    </message>
    <message>
        <source>down arrow</source>
        <translation>down arrow</translation>
    </message>
    <message>
        <source>left arrow</source>
        <translation>left arrow</translation>
    </message>
    <message>
        <source>right arrow</source>
        <translation>right arrow</translation>
    </message>
    <message>
        <source>Select profile:</source>
        <translation>Select profile:</translation>
    </message>
    <message>
        <source>%lld</source>
        <translation>%lld</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Appearance</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Light</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dark</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
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
        <translation>Launch at Login</translation>
    </message>
    <message>
        <source>Open Login Items</source>
        <translation>Open Login Items</translation>
    </message>
    <message>
        <source>Allow Kelmoth under Login Items in System Settings.</source>
        <translation>Allow Kelmoth under Login Items in System Settings.</translation>
    </message>
    <message>
        <source>Move Kelmoth to the Applications folder to launch it at login.</source>
        <translation>Move Kelmoth to the Applications folder to launch it at login.</translation>
    </message>
    <message>
        <source>Launch at Login could not be changed: %@</source>
        <translation>Launch at Login could not be changed: %@</translation>
    </message>
    <message>
        <source>DEVICE SETTINGS</source>
        <translation>DEVICE SETTINGS</translation>
    </message>
    <message>
        <source>Lift Off Distance</source>
        <translation>Lift Off Distance</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Low</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Medium</translation>
    </message>
    <message>
        <source>High</source>
        <translation>High</translation>
    </message>
    <message>
        <source>Not set</source>
        <translation>Not set</translation>
    </message>
    <message>
        <source>Low (1 mm)</source>
        <translation>Low (1 mm)</translation>
    </message>
    <message>
        <source>Medium (2 mm)</source>
        <translation>Medium (2 mm)</translation>
    </message>
    <message>
        <source>High (3 mm)</source>
        <translation>High (3 mm)</translation>
    </message>
    <message>
        <source>Kelmoth</source>
        <translation>Kelmoth</translation>
    </message>
    <message>
        <source>Version %@</source>
        <translation>Version %@</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>Features</translation>
    </message>
    <message>
        <source>DPI stages by model</source>
        <translation>DPI stages by model</translation>
    </message>
    <message>
        <source>RGB lighting effects &amp; colors</source>
        <translation>RGB lighting effects &amp; colors</translation>
    </message>
    <message>
        <source>Button remapping</source>
        <translation>Button remapping</translation>
    </message>
    <message>
        <source>Battery monitoring</source>
        <translation>Battery monitoring</translation>
    </message>
    <message>
        <source>Supported Devices</source>
        <translation>Supported Devices</translation>
    </message>
    <message>
        <source>Not affiliated with Razer Inc.</source>
        <translation>Not affiliated with Razer Inc.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>No device connected</source>
        <translation>No device connected</translation>
    </message>
    <message>
        <source>Invalid DPI stage</source>
        <translation>Invalid DPI stage</translation>
    </message>
    <message>
        <source>DPI outside supported range</source>
        <translation>DPI outside supported range</translation>
    </message>
    <message>
        <source>Failed to set DPI</source>
        <translation>Failed to set DPI</translation>
    </message>
    <message>
        <source>Failed to change DPI stage</source>
        <translation>Failed to change DPI stage</translation>
    </message>
    <message>
        <source>Failed to set RGB lighting</source>
        <translation>Failed to set RGB lighting</translation>
    </message>
    <message>
        <source>Left button always stays Left Click</source>
        <translation>Left button always stays Left Click</translation>
    </message>
    <message>
        <source>Failed to apply button mapping</source>
        <translation>Failed to apply button mapping</translation>
    </message>
    <message>
        <source>Button remapped</source>
        <translation>Button remapped</translation>
    </message>
    <message>
        <source>Failed to set lift-off distance</source>
        <translation>Failed to set lift-off distance</translation>
    </message>
    <message>
        <source>Battery low</source>
        <translation>Battery low</translation>
    </message>
    <message>
        <source>Battery almost empty</source>
        <translation>Battery almost empty</translation>
    </message>
</context>
</TS>
