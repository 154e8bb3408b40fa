// What Quillmoth needs of GNOME Shell, offered on the session bus to the running Quillmoth alone: the program that
// owns its name there. A head with the imports stands before this, and a foot behind it, for the shell's version.

const kServiceName = 'org.quillmoth.Shell';
const kServicePath = '/org/quillmoth/Shell';
const kServiceInterface = 'org.quillmoth.Shell1';
const kServiceVersion = 1;
const kProgramName = 'org.quillmoth.Quillmoth';
const kPanelTitle = 'Quillmoth Floating';

// Between two events of synthetic keys.
const kKeyGap = 1;
// How long held modifiers that would spoil synthetic keys are waited for, and how often they are looked at.
const kModifierWait = 400;
const kModifierStep = 5;
const kModifiers = Clutter.ModifierType.SHIFT_MASK | Clutter.ModifierType.CONTROL_MASK |
    Clutter.ModifierType.MOD1_MASK | Clutter.ModifierType.MOD4_MASK | Clutter.ModifierType.SUPER_MASK;
const kMostEvents = 64;

const kServiceDescription = `<node><interface name="${kServiceInterface}">
  <property name="Version" type="u" access="read"/>
  <method name="Front"><arg type="i" direction="out"/><arg type="s" direction="out"/></method>
  <method name="GrabKey"><arg type="s" direction="in"/><arg type="b" direction="out"/></method>
  <method name="ReleaseKey"><arg type="s" direction="in"/></method>
  <method name="PlacePanel"><arg type="(iiii)" direction="in"/></method>
  <method name="Places">
    <arg type="(ii)" direction="out"/><arg type="b" direction="out"/><arg type="(iiii)" direction="out"/>
  </method>
  <method name="SendKeys"><arg type="a(ub)" direction="in"/><arg type="b" direction="out"/></method>
  <signal name="KeyChanged"><arg type="s"/><arg type="b"/></signal>
  <signal name="FrontChanged"/>
</interface></node>`;

function heldModifiers() {
    const [, , state] = global.get_pointer();
    return state & kModifiers;
}

class QuillmothService {
    enable() {
        this._program = null;
        this._process = 0;
        // By their accelerators.
        this._keys = new Map();
        this._panel = null;
        this._wanted = null;
        // Synthetic keys that are down.
        this._held = new Set();
        this._timers = new Set();
        this._signals = [];
        this._follow(global.display, 'accelerator-activated', (display, action) => this._pressed(action));
        this._tellsRelease = GObject.signal_lookup('accelerator-deactivated', Meta.Display.$gtype) !== 0;
        if (this._tellsRelease)
            this._follow(global.display, 'accelerator-deactivated', (display, action) => this._released(action));
        this._follow(global.display, 'window-created', (display, window) => this._windowCame(window));
        this._follow(global.display, 'notify::focus-window', () => this._frontChanged());
        this._object = Gio.DBusExportedObject.wrapJSObject(kServiceDescription, this);
        this._object.export(Gio.DBus.session, kServicePath);
        this._watch = Gio.bus_watch_name_on_connection(Gio.DBus.session, kProgramName,
            Gio.BusNameWatcherFlags.NONE,
            (connection, name, owner) => this._programCame(owner), () => this._programLeft());
        this._name = Gio.bus_own_name_on_connection(Gio.DBus.session, kServiceName,
            Gio.BusNameOwnerFlags.NONE, null, null);
    }

    disable() {
        this._programLeft();
        Gio.bus_unown_name(this._name);
        Gio.bus_unwatch_name(this._watch);
        this._object.unexport();
        for (const [object, identifier] of this._signals)
            object.disconnect(identifier);
        this._signals = [];
        for (const timer of this._timers)
            GLib.source_remove(timer);
        this._timers.clear();
        this._keyboard = null;
    }

    get Version() {
        return kServiceVersion;
    }

    _follow(object, signal, handler) {
        this._signals.push([object, object.connect(signal, handler)]);
    }

    _later(milliseconds, work) {
        const timer = GLib.timeout_add(GLib.PRIORITY_HIGH, milliseconds, () => {
            this._timers.delete(timer);
            work();
            return GLib.SOURCE_REMOVE;
        });
        this._timers.add(timer);
    }

    // The caller

    _programCame(owner) {
        this._programLeft();
        this._program = owner;
        Gio.DBus.session.call('org.freedesktop.DBus', '/org/freedesktop/DBus', 'org.freedesktop.DBus',
            'GetConnectionUnixProcessID', new GLib.Variant('(s)', [owner]), new GLib.VariantType('(u)'),
            Gio.DBusCallFlags.NONE, -1, null, (connection, result) => {
                try {
                    const [process] = connection.call_finish(result).deepUnpack();
                    if (this._program === owner)
                        this._process = process;
                } catch {
                    // It has gone already.
                }
            });
    }

    _programLeft() {
        for (const accelerator of [...this._keys.keys()])
            this._ungrab(accelerator);
        for (const key of [...this._held])
            this._notifyKey(key, false);
        this._program = null;
        this._process = 0;
        this._panel = null;
        this._wanted = null;
    }

    // Says no to anybody else.
    _isServed(invocation) {
        if (this._program !== null && invocation.get_sender() === this._program)
            return true;
        invocation.return_dbus_error('org.freedesktop.DBus.Error.AccessDenied',
            'This is for the running Quillmoth alone.');
        return false;
    }

    _tell(signal, parameters) {
        if (this._program !== null) {
            Gio.DBus.session.emit_signal(this._program, kServicePath, kServiceInterface, signal, parameters);
        }
    }

    // The application in front

    _isOwn(window) {
        return this._process !== 0 && window.get_pid() === this._process;
    }

    _frontWindow() {
        const focused = global.display.focus_window;
        if (focused && !this._isOwn(focused))
            return focused;
        if (!focused)
            return null;
        const workspace = global.workspace_manager.get_active_workspace();
        const windows = global.display.get_tab_list(Meta.TabList.NORMAL_ALL, workspace);
        return windows.find(window => !this._isOwn(window)) ?? null;
    }

    FrontAsync(parameters, invocation) {
        if (!this._isServed(invocation))
            return;
        const window = this._frontWindow();
        invocation.return_value(new GLib.Variant('(is)',
            window ? [window.get_pid(), window.get_wm_class() ?? ''] : [0, '']));
    }

    _frontChanged() {
        const focused = global.display.focus_window;
        if (!focused || !this._isOwn(focused))
            this._tell('FrontChanged', null);
    }

    // The hot key

    GrabKeyAsync([accelerator], invocation) {
        if (!this._isServed(invocation))
            return;
        invocation.return_value(new GLib.Variant('(b)', [this._grab(accelerator)]));
    }

    ReleaseKeyAsync([accelerator], invocation) {
        if (!this._isServed(invocation))
            return;
        this._ungrab(accelerator);
        invocation.return_value(null);
    }

    _grab(accelerator) {
        if (this._keys.has(accelerator))
            return true;
        let flags = Meta.KeyBindingFlags.IGNORE_AUTOREPEAT;
        if (this._tellsRelease && Meta.KeyBindingFlags.TRIGGER_RELEASE !== undefined)
            flags |= Meta.KeyBindingFlags.TRIGGER_RELEASE;
        const action = global.display.grab_accelerator(accelerator, flags);
        if (action === Meta.KeyBindingAction.NONE)
            return false;
        Main.wm.allowKeybinding(Meta.external_binding_name_for_action(action),
            Shell.ActionMode.NORMAL | Shell.ActionMode.POPUP);
        this._keys.set(accelerator, {action, isDown: false});
        return true;
    }

    _ungrab(accelerator) {
        const key = this._keys.get(accelerator);
        if (!key)
            return;
        this._keys.delete(accelerator);
        Main.wm.allowKeybinding(Meta.external_binding_name_for_action(key.action), Shell.ActionMode.NONE);
        global.display.ungrab_accelerator(key.action);
    }

    _keyOf(action) {
        for (const [accelerator, key] of this._keys) {
            if (key.action === action)
                return [accelerator, key];
        }
        return [null, null];
    }

    _pressed(action) {
        const [accelerator, key] = this._keyOf(action);
        if (!key || key.isDown)
            return;
        key.isDown = true;
        this._tell('KeyChanged', new GLib.Variant('(sb)', [accelerator, true]));
        if (!this._tellsRelease)
            this._awaitModifiers(accelerator, key, heldModifiers());
    }

    _released(action) {
        const [accelerator, key] = this._keyOf(action);
        if (key)
            this._letGo(accelerator, key);
    }

    // Older shells do not tell of the key itself: the first of its modifiers to go ends the press.
    _awaitModifiers(accelerator, key, held) {
        if (!key.isDown)
            return;
        if (held === 0 || (heldModifiers() & held) !== held)
            this._letGo(accelerator, key);
        else
            this._later(kModifierStep, () => this._awaitModifiers(accelerator, key, held));
    }

    _letGo(accelerator, key) {
        if (!key.isDown)
            return;
        key.isDown = false;
        this._tell('KeyChanged', new GLib.Variant('(sb)', [accelerator, false]));
    }

    // The panel

    PlacePanelAsync([[x, y, width, height]], invocation) {
        if (!this._isServed(invocation))
            return;
        this._wanted = {x, y, width, height};
        if (this._panel)
            this._putPanel(this._panel);
        invocation.return_value(null);
    }

    PlacesAsync(parameters, invocation) {
        if (!this._isServed(invocation))
            return;
        const [x, y] = global.get_pointer();
        const frame = this._panel?.get_frame_rect();
        invocation.return_value(new GLib.Variant('((ii)b(iiii))', [[x, y], Boolean(frame),
            frame ? [frame.x, frame.y, frame.width, frame.height] : [0, 0, 0, 0]]));
    }

    _windowCame(window) {
        if (!this._wanted || !this._isOwn(window))
            return;
        // Its title comes behind it.
        const shown = window.connect('shown', () => {
            window.disconnect(shown);
            if (window.get_title() !== kPanelTitle)
                return;
            this._panel = window;
            window.connect('unmanaging', () => {
                if (this._panel === window)
                    this._panel = null;
            });
            this._putPanel(window);
        });
    }

    _putPanel(window) {
        window.make_above();
        window.stick();
        window.hide_from_window_list?.();
        if (this._wanted)
            window.move_frame(true, this._wanted.x, this._wanted.y);
        window.activate(global.display.get_current_time_roundtrip());
    }

    // Synthetic keys

    SendKeysAsync([events], invocation) {
        if (!this._isServed(invocation))
            return;
        const hasControl = events.some(([key]) => key === 29);
        const harmless = hasControl ? Clutter.ModifierType.CONTROL_MASK : 0;
        const answer = isSent => invocation.return_value(new GLib.Variant('(b)', [isSent]));
        if (events.length > kMostEvents)
            answer(false);
        else
            this._whenUp(harmless, kModifierWait, isUp => isUp ? this._strike(events, answer) : answer(false));
    }

    _whenUp(harmless, patience, done) {
        if ((heldModifiers() & ~harmless) === 0)
            done(true);
        else if (patience <= 0)
            done(false);
        else
            this._later(kModifierStep, () => this._whenUp(harmless, patience - kModifierStep, done));
    }

    _notifyKey(key, isDown) {
        this._keyboard ??= Clutter.get_default_backend().get_default_seat()
            .create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
        this._keyboard.notify_key(GLib.get_monotonic_time(), key,
            isDown ? Clutter.KeyState.PRESSED : Clutter.KeyState.RELEASED);
        if (isDown)
            this._held.add(key);
        else
            this._held.delete(key);
    }

    _strike(events, done) {
        const next = index => {
            if (index === events.length) {
                done(true);
                return;
            }
            this._notifyKey(...events[index]);
            this._later(kKeyGap, () => next(index + 1));
        };
        next(0);
    }
}
