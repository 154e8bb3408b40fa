# Who may know whom: every folder with sources is a module and has its row here. "module | modules | libraries": what is
set(standard [[((arpa|sys|netinet)/[a-z]+\.h|linux/[a-z-]+\.h|(dlfcn|fcntl|poll|unistd)\.h|[a-z_]+)]])
set(qt "Q[A-Z]|Qt")
set(modules
    "Foundation | | unicode/|simdjson|uriparser/"
    "Foundation/Qt | | ${qt}"
    "Platform | Foundation |"
    "EventSource | Platform Foundation |"
    "KeyboardShortcuts | Platform Foundation | nlohmann/"

    "MarkdownUI/Document | Foundation | cmark-gfm"
    "MarkdownUI/Style | MarkdownUI/Document Foundation |"
    "MarkdownUI/Layout | MarkdownUI/Style MarkdownUI/Document Foundation | unicode/"
    "MarkdownUI/Qt | MarkdownUI/Layout MarkdownUI/Style MarkdownUI/Document Foundation/Qt Foundation | ${qt}"

    "Quillmoth/Chat | Platform Foundation |"
    "Quillmoth/Prompts | Platform Foundation |"
    "Quillmoth/Highlighting | MarkdownUI/Style |"
    "Quillmoth/Capture | Platform Foundation |"
    "Quillmoth/Assistant | Quillmoth/Capture Quillmoth/Chat Quillmoth/Prompts EventSource Platform Foundation |"
    "Quillmoth/Application | Quillmoth/Assistant Quillmoth/Prompts KeyboardShortcuts Platform Foundation |"
    "Quillmoth/Editor | Quillmoth/Assistant Quillmoth/Prompts Platform Foundation |"
    "Quillmoth/Settings | Quillmoth/Chat KeyboardShortcuts Platform Foundation |"
    "Quillmoth/Diagnosis | Quillmoth/Capture Platform Foundation |"

    "Quillmoth/Shell/Looks | Foundation/Qt | ${qt}"
    "Quillmoth/Shell/Controls | Quillmoth/Shell/Looks Foundation/Qt Foundation | ${qt}"
    "Quillmoth/Shell/Panel | Quillmoth/Shell/Looks Quillmoth/Assistant Quillmoth/Prompts MarkdownUI/Qt Platform Foundation/Qt Foundation | ${qt}"
    "Quillmoth/Shell/Windows | Quillmoth/Shell/Controls Quillmoth/Shell/Looks Quillmoth/Settings Quillmoth/Chat KeyboardShortcuts Platform Foundation/Qt Foundation | ${qt}"
    "Quillmoth/Shell/Editor | Quillmoth/Shell/Controls Quillmoth/Shell/Looks Quillmoth/Editor Quillmoth/Assistant Platform Foundation/Qt Foundation | ${qt}|unicode/"

    "Platform/Fake | Platform Foundation |"
    "Platform/Posix | Platform Foundation | nlohmann/"
    "Platform/Curl | Platform Foundation | curl/"
    "Platform/Qt | Platform Foundation | ${qt}"
    "Platform/Linux/AtSpi | Platform Foundation | gio/|atspi/"
    "Platform/Linux/Desktop | Platform Foundation | ${qt}|dbus/|gio/"
    "Platform/Linux/Keyring | Platform Foundation | ${qt}|qt6keychain/"
    "Platform/Linux/Tray | Platform Foundation | ${qt}|xcb/"
    "Platform/Linux/Unavailable | Platform Foundation |"
    "Platform/Linux/Shared | Platform Foundation | xkbcommon/"
    "Platform/Linux/Wayland | Platform/Linux/Shared Platform/Linux/Unavailable Platform Foundation | ${qt}|qpa/|wayland-|wlr-|virtual-keyboard-|keyboard-shortcuts-|xkbcommon/"
    "Platform/Linux/Sway | Platform/Linux/Wayland Platform/Linux/Shared Platform Foundation | ${qt}|nlohmann/"
    "Platform/Linux/KWin | Platform/Linux/Wayland Platform/Linux/Shared Platform Foundation | ${qt}|wayland-|fake-input|xkbcommon/"
    "Platform/Linux/Gnome | Platform/Linux/Wayland Platform/Linux/Desktop Platform/Linux/X11/Selection Platform/Linux/X11/Server Platform/Linux/Shared Platform/Linux/Unavailable Platform Foundation | ${qt}|gio/|xcb/"
    "Platform/Linux/X11/Server | Platform Foundation | ${qt}|xcb/"
    "Platform/Linux/X11/Keys | Platform/Linux/Shared Platform/Linux/X11/Server Platform Foundation | ${qt}|xcb/|xkbcommon/"
    "Platform/Linux/X11/Selection | Platform/Linux/Shared Platform/Linux/X11/Server Platform Foundation | ${qt}|xcb/"
    "Platform/Linux/X11/Panel | Platform/Linux/X11/Keys Platform/Linux/X11/Server Platform Foundation | ${qt}|xcb/"
    "Platform/Linux/X11 | Platform/Linux/Shared Platform/Linux/X11/Keys Platform/Linux/X11/Panel Platform/Linux/X11/Selection Platform/Linux/X11/Server Platform Foundation | ${qt}|xkbcommon/"

    "Quillmoth/Main | * | ${qt}")
