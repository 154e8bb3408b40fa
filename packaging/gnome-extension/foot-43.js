
function init() {
    return new QuillmothService();
}
