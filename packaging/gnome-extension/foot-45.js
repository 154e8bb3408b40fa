
export default class QuillmothExtension extends Extension {
    enable() {
        this._service = new QuillmothService();
        this._service.enable();
    }

    disable() {
        this._service.disable();
        this._service = null;
    }
}
