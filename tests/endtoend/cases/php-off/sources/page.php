<?php
// A comment
$name = "x";
?>
<html>
  <body>
    <p>  <?php echo $name; ?>  </p>
    <?= $name ?>
  </body>
</html>
