"""Settings of the bars that the tests start: each along the upper edge of the screen, 30 pixels high,
with nothing in it but the items, at its right end. A clock would change by itself."""

PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="icon-size" type="uint" value="22"/>
      <property name="size" type="uint" value="30"/>
      <property name="plugin-ids" type="array">
        {ids}
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    {plugins}
  </property>
</channel>
"""

# A separator pushes the others apart; the rest is for the plugins that know the setting.
PLUGIN = """
    <property name="plugin-{id}" type="string" value="{name}">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
      <property name="square-icons" type="bool" value="false"/>
      <property name="items" type="array">
        <value type="string" value="{item}"/>
      </property>
      <property name="known-indicators" type="array">
        <value type="string" value="libayatana-application.so"/>
      </property>
    </property>
"""

SWAY = """output X11-1 resolution 1280x800 bg #203040 solid_color
default_border none
xwayland disable
"""

WAYBAR = """{ "layer": "top", "position": "top", "height": 30, "modules-right": ["tray"],
  "tray": { "icon-size": 21, "spacing": 8 } }
"""

WAYBAR_STYLE = "* { font-family: DejaVu Sans; font-size: 13px; border-radius: 0 }\n"


def panel(plugins, item=""):
    """xfce4-panel's settings with these plugins from left to right. A launcher has the `item`, a
    desktop entry in the launcher's own folder."""
    numbered = list(enumerate(plugins, start=1))
    return PANEL.format(
        ids="".join(f'<value type="int" value="{number}"/>' for number, _ in numbered),
        plugins="".join(PLUGIN.format(id=number, name=name, item=item) for number, name in numbered))
