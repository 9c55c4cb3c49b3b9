"""Hosts of status items, as the shell's tests meet them. Imported within a desktop: it connects to its buses."""

import os
import time

from gi.repository import Gio, GLib
from panel import Atspi, wait_for
from screen import Area


def extents(element):
    area = element.get_extents(Atspi.CoordType.SCREEN)
    return Area(area.x, area.y, area.width, area.height)


class SystemTray:
    """A tray as X servers have had for long: the item is a window in it."""

    def __init__(self, desktop, screen, edge="bottom"):
        self._screen = screen
        self._process = desktop.start(["trayer", "--edge", edge, "--align", "right", "--widthtype", "request",
                                       "--heighttype", "pixel", "--height", "28", "--SetDockType", "true",
                                       "--SetPartialStrut", "true"])
        wait_for("the tray", screen.has_tray)
        self._area, self._since, self._opened = None, 0, []
        self._listener = Atspi.EventListener.new(lambda event: self._opened.append(event))
        self._listener.register("object:state-changed:showing")

    def close(self):
        self._listener.deregister("object:state-changed:showing")
        self._process.terminate()
        self._process.wait()
        wait_for("the tray to go", lambda: not self._screen.has_tray())

    def item(self):
        """Its area; none while it is not there, or has only just come: trays lay themselves out several times."""
        area = self._screen.item()
        if area != self._area:
            self._area, self._since = area, time.monotonic()
        return area if time.monotonic() - self._since > 0.2 else None

    def click(self, button):
        self._screen.click(self._area.centre, button)

    def _popup(self):
        return next((event.source for event in self._opened
                     if event.detail1 and event.source.get_role() == Atspi.Role.POPUP_MENU), None)

    def menu(self):
        """Opens the item's menu; gives its titles and what chooses each."""
        self._opened.clear()
        self.click(3)
        popup = wait_for("the menu", self._popup)
        entries = [popup.get_child_at_index(i) for i in range(popup.get_child_count())]
        return [(entry.get_name(), lambda entry=entry: self._screen.click(extents(entry).centre)) for entry in entries]


class NotifierHost:
    """A bar that shows what registers with it on the bus, and draws the menus of its items itself. It reads a menu
    once, and again only when it is told of a change."""

    WATCHER = "org.kde.StatusNotifierWatcher"
    INTERFACES = f"""<node><interface name="{WATCHER}">
        <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
        <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
        <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
        <property name="ProtocolVersion" type="i" access="read"/>
        </interface></node>"""

    def __init__(self, _, screen, edge="bottom", is_bare=False):
        """Bare, it has its name, and answers nothing before `listen`."""
        self._screen, self._names, self._menu = screen, [], None
        x, y = {"left": (0, screen.height - 200), "right": (screen.width - 24, screen.height - 200),
                "top": (screen.width - 200, 0), "bottom": (screen.width - 200, screen.height - 24)}[edge]
        self._item = Area(x, y, 24, 24)
        self._bar = screen.open_window(self._item, is_managed=False)
        self._bus = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"], Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        if not is_bare:
            self.listen()
        Gio.bus_own_name_on_connection(self._bus, self.WATCHER, Gio.BusNameOwnerFlags.NONE, None, None)
        for change in ("LayoutUpdated", "ItemsPropertiesUpdated"):
            self._bus.signal_subscribe(None, "com.canonical.dbusmenu", change, None, None, Gio.DBusSignalFlags.NONE,
                                       self._forget_menu)

    def listen(self):
        self._bus.register_object("/StatusNotifierWatcher", Gio.DBusNodeInfo.new_for_xml(self.INTERFACES).interfaces[0],
                                  self._register, self._property, None)
        self._bus.emit_signal(None, "/StatusNotifierWatcher", self.WATCHER, "StatusNotifierHostRegistered", None)

    def _forget_menu(self, *_):
        self._menu = None

    def _register(self, _connection, _sender, _path, _interface, _method, arguments, invocation):
        self._names.append(arguments[0])
        invocation.return_value(None)

    def _property(self, _connection, _sender, _path, _interface, name):
        return {"IsStatusNotifierHostRegistered": GLib.Variant("b", True),
                "RegisteredStatusNotifierItems": GLib.Variant("as", self._names),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]

    def close(self):
        if not self._bus.is_closed():
            self._bus.close_sync()
            self._screen.close(self._bar)

    def wait_in_queue(self):
        """Till the bus knows that this one follows whoever is the watcher."""
        self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", None, None,
                            Gio.DBusCallFlags.NONE, -1, None)

    def item(self):
        return self._item if self._names else None

    def click(self, button):
        """The press is the bar's; the item is told of the whole click."""
        self._screen.click(self._item.centre, button)
        self.tell(button)

    def tell(self, button):
        item = self._proxy("/StatusNotifierItem", "org.kde.StatusNotifierItem")
        {1: item.Activate, 2: item.SecondaryActivate}[button]("(ii)", *self._item.centre)

    def _proxy(self, path, interface):
        return Gio.DBusProxy.new_sync(self._bus, Gio.DBusProxyFlags.NONE, None, self._names[-1], path, interface)

    def menu(self):
        item = self._proxy("/StatusNotifierItem", "org.kde.StatusNotifierItem")
        menu = self._proxy(item.get_cached_property("Menu").unpack(), "com.canonical.dbusmenu")
        menu.AboutToShow("(i)", 0)
        while GLib.MainContext.default().iteration(False):
            pass  # what the program has told of before
        if not self._menu:
            _, (_, _, self._menu) = menu.GetLayout("(iias)", 0, -1, [])
        return [(properties.get("label", ""),
                 lambda number=number: menu.Event("(isvu)", number, "clicked", GLib.Variant("i", 0), 0))
                for number, properties, _ in self._menu]
