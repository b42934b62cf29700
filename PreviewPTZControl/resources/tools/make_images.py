#!/usr/bin/env python3
"""Writes the panel's SVG images for both themes.

The images are plain generated vector art so that a colour or stroke change is
one edit here followed by a re-run; the generated files are committed so the
build needs no Python.  Run from anywhere:  python3 make_images.py
"""
import math
import os

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(HERE)

THEMES = {
    # Dark theme: light glyphs on dark surfaces.
    "PTZ": dict(fg="#D3D8DF", strong="#FFFFFF", accent="#3D8BFF", accent_hi="#8AB8FF",
                dim="#5F6670", danger="#F25A5A", warn="#F5A623", ok="#FFC93D",
                surface="#1B1F25", ring="#343B45", well="#14171C",
                btn="#2A3039", btn_hov="#353D48", btn_dis="#22262C", on_accent="#FFFFFF"),
    # White theme: dark glyphs on light surfaces.
    "PTZWhite": dict(fg="#3B424C", strong="#12161B", accent="#2468E0", accent_hi="#1A55BE",
                     dim="#B4BAC3", danger="#E04848", warn="#E0901A", ok="#E8A200",
                     surface="#F3F5F8", ring="#D3D9E1", well="#E6EAF0",
                     btn="#FFFFFF", btn_hov="#EAF1FD", btn_dis="#EEF0F3", on_accent="#FFFFFF"),
}


def svg(size, body):
    return ('<svg xmlns="http://www.w3.org/2000/svg" version="1.1" width="%d" height="%d" '
            'viewBox="0 0 %d %d">\n%s\n</svg>\n' % (size, size, size, size, body))


def stroke(color, width=1.6, extra=""):
    return ('fill="none" stroke="%s" stroke-width="%s" stroke-linecap="round" '
            'stroke-linejoin="round"%s' % (color, width, extra))


def arc_arrow(cx, cy, r, start_deg, sweep_deg, color, width, head):
    """A circular arrow drawn clockwise (screen coordinates) with a filled head."""
    a0 = math.radians(start_deg)
    a1 = math.radians(start_deg + sweep_deg)
    x0, y0 = cx + r * math.cos(a0), cy + r * math.sin(a0)
    x1, y1 = cx + r * math.cos(a1), cy + r * math.sin(a1)
    large = 1 if abs(sweep_deg) > 180 else 0
    sweep = 1 if sweep_deg > 0 else 0
    body = '<path d="M%.2f %.2f A%.2f %.2f 0 %d %d %.2f %.2f" %s/>' % (
        x0, y0, r, r, large, sweep, x1, y1, stroke(color, width))
    # Head: a triangle tangent to the circle at the end point.
    direction = 1 if sweep_deg > 0 else -1
    tx, ty = -math.sin(a1) * direction, math.cos(a1) * direction
    nx, ny = math.cos(a1), math.sin(a1)
    tip = (x1 + tx * head, y1 + ty * head)
    b1 = (x1 + nx * head * 0.8, y1 + ny * head * 0.8)
    b2 = (x1 - nx * head * 0.8, y1 - ny * head * 0.8)
    body += '<path d="M%.2f %.2f L%.2f %.2f L%.2f %.2f Z" fill="%s" stroke="%s" stroke-width="%s" stroke-linejoin="round"/>' % (
        tip[0], tip[1], b1[0], b1[1], b2[0], b2[1], color, color, width * 0.6)
    return body


# ---------------------------------------------------------------- direction pad
def pad_images(t):
    out = {}
    out["ptz_control_panel_bg.svg"] = svg(174, "\n".join([
        '<circle cx="87" cy="87" r="86.5" fill="%s" stroke="%s" stroke-width="1"/>' % (t["surface"], t["ring"]),
        '<circle cx="87" cy="87" r="75.5" fill="none" stroke="%s" stroke-width="1"/>' % t["ring"],
        '<circle cx="87" cy="87" r="29" fill="%s" stroke="%s" stroke-width="1"/>' % (t["well"], t["ring"]),
    ]))
    states = {
        "nor": t["fg"],
        "hov_sel": t["strong"],
        "pre": t["accent"],
        "dis": t["dim"],
    }
    for state, color in states.items():
        # Straight arrows: 24 x 24, a rounded solid triangle pointing up.
        out["ptz_control_panel_arrows_%s.svg" % state] = svg(24, (
            '<path d="M12 7.5 L17.5 15.5 L6.5 15.5 Z" fill="%s" stroke="%s" stroke-width="2" '
            'stroke-linejoin="round"/>') % (color, color))
        # Diagonal arrows: 36 x 36. The pad turns them by 45 degrees and fits the
        # turned square back into 36 x 36, so they are drawn larger than they show.
        out["ptz_control_panel_arrows_sm_%s.svg" % state] = svg(36, (
            '<path d="M18 11.5 L24 20.5 L12 20.5 Z" fill="%s" stroke="%s" stroke-width="2" '
            'stroke-linejoin="round"/>') % (color, color))
    rotate = {
        "nor": (t["btn"], t["ring"], t["fg"]),
        "hov_sel": (t["btn_hov"], t["accent"], t["strong"]),
        "pre": (t["accent"], t["accent"], t["on_accent"]),
        "dis": (t["btn_dis"], t["ring"], t["dim"]),
    }
    for state, (fill, edge, glyph) in rotate.items():
        out["ptz_control_panel_rotate_%s.svg" % state] = svg(48, "\n".join([
            '<circle cx="24" cy="24" r="22.5" fill="%s" stroke="%s" stroke-width="1"/>' % (fill, edge),
            arc_arrow(24, 24, 9, -50, 290, glyph, 2, 3.2),
            '<circle cx="24" cy="24" r="2" fill="%s"/>' % glyph,
        ]))
    return out


# ------------------------------------------------------------- list and misc
def pin(fill_attrs):
    return ('<path d="M12 20.5 C12 20.5 5.5 14.2 5.5 9.8 A6.5 6.5 0 0 1 18.5 9.8 '
            'C18.5 14.2 12 20.5 12 20.5 Z" %s/>' % fill_attrs)


def common_images(t):
    out = {}
    fg = t["fg"]
    out["ic_device preset point_nor.svg"] = svg(24, pin('fill="%s"' % t["accent"]) +
        '<circle cx="12" cy="9.8" r="2.4" fill="%s"/>' % t["on_accent"])
    out["ic_virtual preset point_nor.svg"] = svg(24, pin(stroke(t["accent"], 1.5, ' stroke-dasharray="2.2 1.6"')) +
        '<circle cx="12" cy="9.8" r="2.2" fill="%s"/>' % t["accent"])
    out["ic_unable preset point_nor.svg"] = svg(24, pin(stroke(t["dim"], 1.5)) +
        '<circle cx="12" cy="9.8" r="2" fill="none" stroke="%s" stroke-width="1.5"/>' % t["dim"])
    out["ic_fisheye preset point_nor.svg"] = svg(24, "\n".join([
        '<circle cx="12" cy="12" r="7.5" %s/>' % stroke(t["accent"], 1.6),
        '<ellipse cx="12" cy="12" rx="7.5" ry="3.2" %s/>' % stroke(t["accent"], 1.2),
        '<circle cx="12" cy="12" r="2.4" fill="%s"/>' % t["accent"],
    ]))
    out["common_start_nor.svg"] = svg(24,
        '<path d="M9 6.8 L17.2 12 L9 17.2 Z" fill="%s" stroke="%s" stroke-width="1.4" stroke-linejoin="round"/>' % (fg, fg))
    out["common_pause_nor.svg"] = svg(24,
        '<rect x="7.5" y="6.5" width="3" height="11" rx="1" fill="%s"/>'
        '<rect x="13.5" y="6.5" width="3" height="11" rx="1" fill="%s"/>' % (fg, fg))
    out["common_edit_nor.svg"] = svg(24, "\n".join([
        '<path d="M14.8 5.8 L18.2 9.2 L9.2 18.2 L5.5 18.5 L5.8 14.8 Z" %s/>' % stroke(fg),
        '<path d="M13 7.6 L16.4 11" %s/>' % stroke(fg),
    ]))
    out["common_delete_nor.svg"] = svg(24, "\n".join([
        '<path d="M5 7.5 H19" %s/>' % stroke(fg),
        '<path d="M9.8 7.5 V5.5 H14.2 V7.5" %s/>' % stroke(fg),
        '<path d="M7 7.5 L8 19 H16 L17 7.5" %s/>' % stroke(fg),
        '<path d="M10.5 10.5 V16 M13.5 10.5 V16" %s/>' % stroke(fg),
    ]))
    out["common_record_nor.svg"] = svg(24,
        '<circle cx="12" cy="12" r="7" %s/><circle cx="12" cy="12" r="3.8" fill="%s"/>' % (stroke(fg), t["danger"]))
    out["common_record_pre.svg"] = svg(24,
        '<circle cx="12" cy="12" r="7" %s/><rect x="9.2" y="9.2" width="5.6" height="5.6" rx="1" fill="%s"/>' % (
            stroke(t["danger"]), t["danger"]))
    out["ic_tips.svg"] = svg(24, "\n".join([
        '<circle cx="12" cy="12" r="8" %s/>' % stroke(t["accent"]),
        '<circle cx="12" cy="8.4" r="1.1" fill="%s"/>' % t["accent"],
        '<path d="M12 11 V16.2" %s/>' % stroke(t["accent"], 1.8),
    ]))
    out["ic_alert_error.svg"] = svg(24, "\n".join([
        '<circle cx="12" cy="12" r="8.5" fill="%s"/>' % t["danger"],
        '<path d="M12 7.5 V12.8" %s/>' % stroke("#FFFFFF", 2),
        '<circle cx="12" cy="16.2" r="1.2" fill="#FFFFFF"/>',
    ]))
    out["icon_time_nor.svg"] = svg(24, "\n".join([
        '<circle cx="12" cy="12" r="7.5" %s/>' % stroke(fg),
        '<path d="M12 8 V12 L14.8 13.8" %s/>' % stroke(fg),
    ]))
    out["common_status_alert_exception.svg"] = svg(24, "\n".join([
        '<path d="M12 4.5 L20.5 19 H3.5 Z" fill="%s" stroke="%s" stroke-width="1.5" stroke-linejoin="round"/>' % (t["warn"], t["warn"]),
        '<path d="M12 9.5 V14" %s/>' % stroke("#1B1F25", 1.9),
        '<circle cx="12" cy="16.6" r="1.1" fill="#1B1F25"/>',
    ]))
    return out


# ------------------------------------------------------------ function buttons
def corners(c, w=1.6, a=4.5, lo=4.5, hi=19.5):
    d = ("M{lo} {la} V{lo} H{la} M{ha} {lo} H{hi} V{la} "
         "M{hi} {ha} V{hi} H{ha} M{la} {hi} H{lo} V{ha}").format(
        lo=lo, hi=hi, la=lo + a, ha=hi - a)
    return '<path d="%s" %s/>' % (d, stroke(c, w))


def magnifier(c, inner):
    return ('<circle cx="10.5" cy="10.5" r="5.5" %s/><path d="M14.6 14.6 L19 19" %s/>' %
            (stroke(c), stroke(c, 2)) + '<path d="%s" %s/>' % (inner, stroke(c)))


def aperture(c, r_in):
    parts = ['<circle cx="12" cy="12" r="8" %s/>' % stroke(c)]
    for k in range(6):
        a = math.radians(60 * k)
        b = math.radians(60 * k + 70)
        x0, y0 = 12 + r_in * math.cos(a), 12 + r_in * math.sin(a)
        x1, y1 = 12 + 8 * math.cos(b), 12 + 8 * math.sin(b)
        parts.append('<path d="M%.2f %.2f L%.2f %.2f" %s/>' % (x0, y0, x1, y1, stroke(c, 1.2)))
    parts.append('<circle cx="12" cy="12" r="%s" %s/>' % (r_in, stroke(c, 1.2)))
    return "\n".join(parts)


def button_images(t):
    fg, acc = t["fg"], t["accent"]
    out = {}
    bulb = ('<path d="M9.2 15.5 C7.6 14.4 6.8 12.8 6.8 11 A5.2 5.2 0 0 1 17.2 11 '
            'C17.2 12.8 16.4 14.4 14.8 15.5 V17 H9.2 Z" %s/>'
            '<path d="M9.8 19.5 H14.2" %s/>')
    out["light_off.svg"] = svg(24, bulb % (stroke(fg), stroke(fg)))
    rays = "".join('<path d="M%.2f %.2f L%.2f %.2f" %s/>' % (
        12 + 7.5 * math.cos(math.radians(a)), 11 + 7.5 * math.sin(math.radians(a)),
        12 + 9.5 * math.cos(math.radians(a)), 11 + 9.5 * math.sin(math.radians(a)), stroke(t["ok"], 1.4))
        for a in (-180, -135, -90, -45, 0))
    out["light_on.svg"] = svg(24, (bulb % ('fill="%s" stroke="%s" stroke-width="1.6" stroke-linejoin="round"' % (t["ok"], t["ok"]),
                                            stroke(fg))) + rays)
    out["wiper.svg"] = svg(24, "\n".join([
        '<path d="M3.5 17 A9.5 9.5 0 0 1 20.5 17" %s/>' % stroke(fg),
        '<path d="M12 18 L7.2 8.6" %s/>' % stroke(acc, 2),
        '<circle cx="12" cy="18" r="1.6" fill="%s"/>' % fg,
    ]))
    out["3d_positioning.svg"] = svg(24, "\n".join([
        corners(fg),
        '<rect x="8.5" y="8.5" width="7" height="7" %s/>' % stroke(acc, 1.4, ' stroke-dasharray="1.8 1.4"'),
        '<circle cx="12" cy="12" r="1.2" fill="%s"/>' % acc,
    ]))
    out["one_key_focus.svg"] = svg(24, "\n".join([
        corners(fg),
        '<circle cx="12" cy="12" r="3.2" %s/>' % stroke(acc),
        '<circle cx="12" cy="12" r="1" fill="%s"/>' % acc,
    ]))
    out["lens_init.svg"] = svg(24, "\n".join([
        arc_arrow(12, 12, 7.5, -60, 300, fg, 1.6, 2.6),
        '<circle cx="12" cy="12" r="3" %s/>' % stroke(acc),
    ]))
    out["manual_tracking.svg"] = svg(24, "\n".join([
        '<circle cx="12" cy="12" r="6" %s/>' % stroke(fg),
        '<path d="M12 3.5 V7 M12 17 V20.5 M3.5 12 H7 M17 12 H20.5" %s/>' % stroke(fg),
        '<circle cx="12" cy="12" r="1.8" fill="%s"/>' % acc,
    ]))
    out["auto_tracking.svg"] = svg(24, "\n".join([
        '<circle cx="11" cy="12" r="5.5" %s/>' % stroke(fg),
        '<circle cx="11" cy="12" r="1.7" fill="%s"/>' % acc,
        '<path d="M18 7.5 L20.5 12 L18 16.5" %s/>' % stroke(acc),
        '<path d="M11 4 V6.5 M11 17.5 V20 M3 12 H5.5" %s/>' % stroke(fg),
    ]))
    out["face_capture.svg"] = svg(24, "\n".join([
        corners(fg),
        '<circle cx="12" cy="11" r="4.2" %s/>' % stroke(acc),
        '<path d="M10.4 12.3 Q12 13.6 13.6 12.3" %s/>' % stroke(acc, 1.2),
        '<circle cx="10.5" cy="10" r="0.7" fill="%s"/><circle cx="13.5" cy="10" r="0.7" fill="%s"/>' % (acc, acc),
    ]))
    out["park_action.svg"] = svg(24, "\n".join([
        '<rect x="4.5" y="4.5" width="15" height="15" rx="3" %s/>' % stroke(fg),
        '<path d="M10 16.5 V7.5 H13 A2.75 2.75 0 0 1 13 13 H10" %s/>' % stroke(acc, 1.8),
    ]))
    out["refresh.svg"] = svg(24, "\n".join([
        arc_arrow(12, 12, 7, 200, 140, fg, 1.6, 2.5),
        arc_arrow(12, 12, 7, 20, 140, fg, 1.6, 2.5),
    ]))
    out["zoom_in.svg"] = svg(24, magnifier(fg, "M8 10.5 H13 M10.5 8 V13"))
    out["zoom_out.svg"] = svg(24, magnifier(fg, "M8 10.5 H13"))
    out["focus_near.svg"] = svg(24, "\n".join([
        '<path d="M12 20 V13.5" %s/>' % stroke(fg),
        '<path d="M12 13.5 C8.5 13.5 7.5 10.5 8 7 C9.8 7.5 11 8.4 12 10 C13 8.4 14.2 7.5 16 7 C16.5 10.5 15.5 13.5 12 13.5 Z" %s/>' % stroke(fg),
        '<path d="M12 18 C10 16.5 8 16.5 7 17" %s/>' % stroke(fg, 1.3),
    ]))
    out["focus_far.svg"] = svg(24, "\n".join([
        '<path d="M3.5 18.5 L9.5 9.5 L13.5 15 L16 11.8 L20.5 18.5 Z" %s/>' % stroke(fg),
        '<circle cx="17" cy="6.8" r="1.6" %s/>' % stroke(fg, 1.3),
    ]))
    out["iris_open.svg"] = svg(24, aperture(fg, 4.5))
    out["iris_close.svg"] = svg(24, aperture(fg, 1.8))
    shackle_closed = '<path d="M8.5 10.5 V8 A3.5 3.5 0 0 1 15.5 8 V10.5" %s/>' % stroke(fg)
    shackle_open = '<path d="M8.5 10.5 V8 A3.5 3.5 0 0 1 15.3 6.8" %s/>' % stroke(fg)
    body = ('<rect x="6" y="10.5" width="12" height="9" rx="2" fill="%s"/>'
            '<path d="M12 14 V16" %s/>') % (fg, stroke(t["surface"], 1.8))
    out["lock.svg"] = svg(24, shackle_closed + body)
    out["unlock.svg"] = svg(24, shackle_open + body)
    out["add.svg"] = svg(24, '<path d="M12 6 V18 M6 12 H18" %s/>' % stroke(fg, 1.8))
    out["remove.svg"] = svg(24, '<path d="M6 12 H18" %s/>' % stroke(fg, 1.8))
    out["move_up.svg"] = svg(24, '<path d="M7 14.5 L12 9.5 L17 14.5" %s/>' % stroke(fg, 1.8))
    out["move_down.svg"] = svg(24, '<path d="M7 9.5 L12 14.5 L17 9.5" %s/>' % stroke(fg, 1.8))
    gear = ['<circle cx="12" cy="12" r="5.2" %s/>' % stroke(fg), '<circle cx="12" cy="12" r="2" %s/>' % stroke(fg)]
    for k in range(8):
        a = math.radians(45 * k)
        gear.append('<path d="M%.2f %.2f L%.2f %.2f" %s/>' % (
            12 + 5.2 * math.cos(a), 12 + 5.2 * math.sin(a), 12 + 7.6 * math.cos(a), 12 + 7.6 * math.sin(a), stroke(fg, 2)))
    out["settings.svg"] = svg(24, "\n".join(gear))
    return out


def write(rel, text):
    path = os.path.join(ROOT, rel)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as f:
        f.write(text)
    return rel


def qrc_entry(rel):
    return "    <file>%s</file>" % rel.replace("&", "&amp;")


def main():
    files = []
    for theme, t in THEMES.items():
        for name, text in pad_images(t).items():
            files.append(write("Images/%s/Direction/%s" % (theme, name), text))
        for name, text in common_images(t).items():
            files.append(write("Images/%s/%s" % (theme, name), text))
        for name, text in button_images(t).items():
            files.append(write("Images/%s/Buttons/%s" % (theme, name), text))
    # The preset view warms its renderer with this one at start-up.
    legacy = write("images/common_edit.svg", common_images(THEMES["PTZ"])["common_edit_nor.svg"])
    qrc = ['<!DOCTYPE RCC><RCC version="1.0">', '<qresource prefix="/">']
    qrc += [qrc_entry(f) for f in sorted(files) + [legacy]]
    qrc += ["</qresource>", "</RCC>", ""]
    write("ptz_images.qrc", "\n".join(qrc))
    print("%d images written" % (len(files) + 1))


if __name__ == "__main__":
    main()
