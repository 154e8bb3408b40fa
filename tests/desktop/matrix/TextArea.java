import java.awt.event.ActionEvent;
import java.nio.file.Files;
import java.nio.file.Path;
import javax.swing.AbstractAction;
import javax.swing.JFrame;
import javax.swing.JScrollPane;
import javax.swing.JTextArea;
import javax.swing.KeyStroke;
import javax.swing.SwingUtilities;
import javax.swing.undo.UndoManager;

/** Shows the file that it is given in a text area of Swing, with Ctrl+Z to take a step back. */
public class TextArea {
    public static void main(String[] arguments) throws Exception {
        String text = Files.readString(Path.of(arguments[0]));
        SwingUtilities.invokeLater(() -> show(text));
    }

    private static void show(String text) {
        JTextArea area = new JTextArea(text, 12, 50);
        UndoManager steps = new UndoManager();
        area.getDocument().addUndoableEditListener(steps);
        area.getInputMap().put(KeyStroke.getKeyStroke("ctrl Z"), "back");
        area.getActionMap().put("back", new AbstractAction() {
            @Override
            public void actionPerformed(ActionEvent event) {
                if (steps.canUndo())
                    steps.undo();
            }
        });
        JFrame frame = new JFrame("Text area");
        frame.setDefaultCloseOperation(JFrame.EXIT_ON_CLOSE);
        frame.add(new JScrollPane(area));
        frame.pack();
        frame.setVisible(true);
        area.requestFocusInWindow();
    }
}
