'use strict';

const {Clutter, Gio, GLib, GObject, Meta, Shell} = imports.gi;
const Main = imports.ui.main;
