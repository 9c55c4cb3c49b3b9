"""The shells: what starts each, with one bar in one grey that has nothing but the tray in it."""

import os
from typing import Callable, NamedTuple

from desktop import Desktop
from sway import SwayDesktop

THICKNESS = 32  # of the bar


class Shell(NamedTuple):
    grey: int  # of the bar
    files: dict  # that it reads: path below the home, what is in it
    command: list
    desktop: Callable = Desktop
    programs: tuple = ("Xvfb", "openbox")  # which the desktop takes
    edges: dict = {}  # where the bar is tried, in the shell's words
    has_watcher: bool = True  # of items on the bus
    places_windows: bool = True  # where they ask to be

    def configured(self, home, edge):
        """Writes what the shell reads; gives what starts it."""
        values = {"edge": self.edges[edge], "home": home, "thickness": THICKNESS,
                  "doubled": f"\\x{self.grey:02x}" * 2, "color": "#" + f"{self.grey:02x}" * 3}
        for path, text in self.files.items():
            path = os.path.join(home, path)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="utf-8") as file:
                file.write(text.format(**values))
        return [word.format(**values) for word in self.command]


XFCE4_PANEL = """<channel name="xfce4-panel" version="1.0">
<property name="configver" type="int" value="2"/>
<property name="panels" type="array"><value type="int" value="1"/><property name="panel-1" type="empty">
  <property name="position-locked" type="bool" value="true"/>
  <property name="length" type="uint" value="100"/>
  <property name="size" type="uint" value="{thickness}"/>
  <property name="background-style" type="uint" value="1"/>
  <property name="background-rgba" type="array"><value type="double" value="0.8"/><value type="double" value="0.8"/>
    <value type="double" value="0.8"/><value type="double" value="1"/></property>
  <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
</property></property>
<property name="plugins" type="empty"><property name="plugin-1" type="string" value="systray"/></property>
</channel>"""

LXQT_PANEL = r"""[General]
panels=bar
[bar]
plugins=tray
position={edge}
panelSize={thickness}
iconSize=22
width=100
width-percent=true
background-color=@Variant(\0\0\0\x43\x1\xff\xff{doubled}{doubled}{doubled}\0\0)
[tray]
type=statusnotifier
"""

TINT2 = """background_color = {color} 100
panel_items = S
panel_size = 100% {thickness}
panel_position = {edge}
panel_background_id = 1
systray_padding = 4 4 4
"""

WAYBAR = """{{"position": "{edge}", "height": {thickness}, "modules-right": ["tray"], "tray": {{"icon-size": 22}}}}"""
WAYBAR_STYLE = "window#waybar {{ background: {color}; border: none; }}"

SWAY = Shell(  # which has every window in the middle
    grey=0x20, files={"waybar": WAYBAR, "waybar.css": WAYBAR_STYLE},
    command=["waybar", "--config", "{home}/waybar", "--style", "{home}/waybar.css"],
    edges={"bottom": "bottom"}, desktop=lambda: SwayDesktop(has_x=False), programs=("sway", "grim"),
    places_windows=False)

SHELLS = {
    "xfce4-panel": Shell(
        grey=0xCC, files={"config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml": XFCE4_PANEL},
        # What is in its file is read once in a session.
        command=["sh", "-c", "set {edge}; query='xfconf-query -c xfce4-panel -n -p /panels/panel-1'; "
                 "$query/mode -t uint -s $1; $query/position -t string -s \"p=$2;x=0;y=0\"; "
                 "exec xfce4-panel --disable-wm-check"],
        programs=("Xvfb", "openbox", "xfce4-panel", "xfconf-query"), edges={"bottom": "0 12", "left": "1 5"}),
    "lxqt-panel": Shell(
        grey=0x20, files={"config/lxqt/panel.conf": LXQT_PANEL}, command=["lxqt-panel"],
        edges={"bottom": "Bottom", "left": "Left"}),
    "tint2": Shell(
        grey=0x10, files={"tint2rc": TINT2}, command=["tint2", "-c", "{home}/tint2rc"],
        edges={"bottom": "bottom center horizontal", "left": "center left vertical"}, has_watcher=False),
    "sway": SWAY,
    "sway-xwayland": SWAY._replace(
        grey=0xCC, desktop=lambda: SwayDesktop(has_x=True), programs=("sway", "grim", "Xwayland")),
}
